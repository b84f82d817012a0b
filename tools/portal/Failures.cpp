#include "portal/Failures.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <memory>
#include <string>
#include <thread>

#include <httplib.h>

namespace {

const char *const steps[] = {"info",   "token", "self", "user",
                             "search", "item",  "data", "thumbnail"};
const char *const kinds[] = {"status", "error", "truncated", "damaged", "slow", "silent"};
const size_t SlowPieces = 20;

template <typename Names>
bool isOneOf(const Names &names, const QString &name)
{
    return std::any_of(std::begin(names), std::end(names),
                       [&name](const char *known) { return name == QLatin1String(known); });
}

QString stepOf(const QStringList &rest)
{
    QString call = rest.join(QLatin1Char('/'));
    if (call == QLatin1String("generateToken"))
        return QStringLiteral("token");
    if (call == QLatin1String("portals/self"))
        return QStringLiteral("self");
    if (call.startsWith(QLatin1String("community/users/")))
        return QStringLiteral("user");
    if (!call.startsWith(QLatin1String("content/items/")))
        return call; // "info", "search", or none of them
    return rest.size() == 3                         ? QStringLiteral("item")
           : rest.value(3) == QLatin1String("data") ? QStringLiteral("data")
                                                    : QStringLiteral("thumbnail");
}

// The whole body, whichever way the response was going to send it.
std::string takeBody(httplib::Response &response)
{
    std::string body = response.body;
    response.body.clear();
    if (const httplib::ContentProvider provider = response.content_provider_) {
        httplib::DataSink sink;
        sink.write = [&body](const char *bytes, size_t size) {
            body.append(bytes, size);
            return true;
        };
        const size_t length = response.content_length_;
        while (body.size() < length && provider(body.size(), length - body.size(), sink)) {
        }
        response.content_provider_ = nullptr;
        response.content_length_ = 0;
    }
    return body;
}

void sendUpTo(httplib::Response &response, const std::string &body, const std::string &type,
              size_t end, size_t pieces, std::chrono::milliseconds pause)
{
    using Clock = std::chrono::steady_clock;
    struct State
    {
        std::string body;
        Clock::time_point next;
    };
    const auto state = std::make_shared<State>(State{body, Clock::now() + pause});
    const size_t piece = std::max<size_t>(1, (body.size() + pieces - 1) / pieces);
    response.set_content_provider(
        body.size(), type, [=](size_t offset, size_t length, httplib::DataSink &sink) {
            // Back to the server after a short while at most: it looks there whether it is to stop.
            if (Clock::now() < state->next) {
                std::this_thread::sleep_for(std::min(pause, std::chrono::milliseconds(50)));
                return !sink.is_writable || sink.is_writable();
            }
            if (offset >= end)
                return false;
            state->next = Clock::now() + pause;
            return sink.write(state->body.data() + offset, std::min({piece, length, end - offset}));
        });
}

} // namespace

bool Failures::add(const QString &rule)
{
    const QStringList parts = rule.split(QLatin1Char(':'));
    bool isNumber = true;
    const int number = parts.size() == 3 ? parts.at(2).toInt(&isNumber) : 0;
    if (parts.size() < 2 || parts.size() > 3 || !isOneOf(steps, parts.at(0))
        || !isOneOf(kinds, parts.at(1)) || !isNumber || (parts.size() == 3 && number < 1))
        return false;
    m_rules.append(Rule{parts.at(0), parts.at(1), number});
    return true;
}

QString Failures::kindFor(const QString &step)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const int number = ++m_counts[step];
    for (const Rule &rule : qAsConst(m_rules)) {
        if (rule.step == step && (rule.number == 0 || rule.number == number))
            return rule.kind;
    }
    return QString();
}

void Failures::apply(const QStringList &rest, httplib::Response &response)
{
    const QString kind = kindFor(stepOf(rest));
    if (kind.isEmpty())
        return;
    std::string body = takeBody(response);
    const std::string type = response.get_header_value("Content-Type");
    response.headers.erase("Content-Type");
    if (kind == QLatin1String("status")) {
        response.status = 500;
        response.set_content("Failed on purpose.", "text/plain");
    } else if (kind == QLatin1String("error")) {
        response.status = 200;
        response.set_content("{\"error\":{\"code\":500,\"message\":\"Failed on purpose.\","
                             "\"details\":[\"Somewhere.\"]}}",
                             "application/json");
    } else if (kind == QLatin1String("damaged")) {
        std::fill(body.begin() + static_cast<std::ptrdiff_t>(body.size() / 2), body.end(), '\0');
        response.set_content(body, type);
    } else if (kind == QLatin1String("truncated")) {
        sendUpTo(response, body, type, body.size() / 2, 1, std::chrono::milliseconds(0));
    } else if (kind == QLatin1String("slow")) {
        sendUpTo(response, body, type, body.size(), SlowPieces, std::chrono::milliseconds(50));
    } else {
        sendUpTo(response, body, type, body.size(), 1, std::chrono::minutes(10));
    }
}
