#include "logging/SyslogFormatter.h"
#include "support/FuzzTarget.h"

#include <QtDebug>

namespace {

// Values that form no variable together with what stands around them.
const QMessageLogContext context("/x/<file>.cpp", 42, "<function>", "<category>");

// The variables one after another, as a reader would do it.
QString expanded(const QString &text)
{
    const struct
    {
        QString name;
        QString value;
    } variables[] = {{QStringLiteral("%{category}"), QStringLiteral("<category>")},
                     {QStringLiteral("%{function}"), QStringLiteral("<function>")},
                     {QStringLiteral("%{file}"), QStringLiteral("/x/<file>.cpp")},
                     {QStringLiteral("%{filename}"), QStringLiteral("<file>.cpp")},
                     {QStringLiteral("%{line}"), QStringLiteral("42")}};
    QString result;
    for (int i = 0; i < text.size();) {
        const int start = i;
        for (const auto &variable : variables) {
            if (i == start && text.midRef(i).startsWith(variable.name)) {
                result += variable.value;
                i += variable.name.size();
            }
        }
        if (i == start)
            result += text.at(i++);
    }
    return result;
}

} // namespace

// Lines: user data, message pattern, name; the rest is the message.
TESSALINE_FUZZ_TARGET(bytes)
{
    const QString text = QString::fromUtf8(bytes);
    const QString userData = text.section(QLatin1Char('\n'), 0, 0);
    const QString pattern = text.section(QLatin1Char('\n'), 1, 1);
    const QString name = text.section(QLatin1Char('\n'), 2, 2);
    const QString message = text.section(QLatin1Char('\n'), 3);

    QString replaced = userData;
    SyslogFormatter::replaceVariables(replaced, context);
    if (replaced != expanded(userData))
        qFatal("A variable is lost or left");

    // A backtrace of each message is slow, and not ours.
    if (!pattern.contains(QLatin1String("backtrace"))) {
        qSetMessagePattern(pattern);
        qFormatLogMessage(QtWarningMsg, context, message);
    }

    static SyslogFormatter formatter;
    formatter.setUserData(userData);
    formatter.setName(name);
    for (const int version : {0, 1}) {
        formatter.setVersion(version);
        const QString record = formatter.record(QtWarningMsg, context, message);
        if (!record.startsWith(QLatin1String("<12>")) || !record.endsWith(message))
            qFatal("Not a record");
        if (version > 0 && !userData.isEmpty()
            && !record.contains(QLatin1Char('[') + replaced + QLatin1Char(']')))
            qFatal("No user data");
    }
}
