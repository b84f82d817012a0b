#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <mutex>

namespace httplib {
struct Response;
}

// What goes wrong on purpose. Only the program that the tests build has it (PORTAL_FAILURES); its
// option --fail takes "step:kind", or "step:kind:n" for the n-th request of that step alone:
//
//     steps      info, token, self, user, search, item, data, thumbnail
//     kinds      status     HTTP status 500
//                error      status 200 with an error in JSON
//                truncated  the connection ends in the middle of the body
//                damaged    the body's second half is zeros
//                slow       the body comes in 20 pieces at most, one every 50 milliseconds
//                silent     no byte of the body comes for 10 minutes
class Failures
{
public:
    // False if the text isn't as above.
    bool add(const QString &rule);
    // Changes what the server is about to send. `rest` is the path below /sharing/rest. Called from
    // any thread.
    void apply(const QStringList &rest, httplib::Response &response);

private:
    struct Rule
    {
        QString step;
        QString kind;
        int number = 0; // 0: every request
    };
    QString kindFor(const QString &step);

    QList<Rule> m_rules;
    QMap<QString, int> m_counts; // requests so far, by step
    std::mutex m_mutex;          // of the counts
};
