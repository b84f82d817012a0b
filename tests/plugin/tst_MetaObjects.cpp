#include "plugin/TessalinePlugin.h"
#include "support/IsolatedHome.h"

#include <QDir>
#include <QFile>
#include <QMetaEnum>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QRegularExpression>
#include <QTest>

// What documents and hosts can rely on is each class's meta-object: its base, its properties with
// their order, access and notify signals, its signals, slots, methods and enumerations. The tables
// in metaobjects/ say what they have to be; this compares them line by line with what moc made.
class tst_MetaObjects : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void metaObjectIsAsTheTableSays_data();
    void metaObjectIsAsTheTableSays();
    void pointerAndListAreMetaTypes_data() { metaObjectIsAsTheTableSays_data(); }
    void pointerAndListAreMetaTypes();
    void enumsOfParametersNameTheirClass_data() { metaObjectIsAsTheTableSays_data(); }
    void enumsOfParametersNameTheirClass();
    void everyRegisteredClassHasATable();
};

namespace {

// Type names without scopes, and one name for types that have several.
QString plainType(const QByteArray &name)
{
    const int type = QMetaType::type(name);
    QString plain = QString::fromLatin1(type != QMetaType::UnknownType && type < QMetaType::User
                                            ? QMetaType::typeName(type)
                                            : name.constData());
    static const QRegularExpression scope(QStringLiteral("\\w+::"));
    return plain.remove(scope);
}

QString describeProperty(const QMetaProperty &property)
{
    QString notify = QStringLiteral("-");
    if (property.hasNotifySignal())
        notify = QString::fromLatin1(property.notifySignal().name());
    else if (property.isConstant())
        notify = QStringLiteral("constant");
    const QString access = QLatin1String(property.isReadable() ? "R" : "")
                           + QLatin1String(property.isWritable() ? "W" : "");
    return QStringLiteral("property %1 %2 %3 %4%5")
        .arg(plainType(property.typeName()), QString::fromLatin1(property.name()), access, notify,
             QLatin1String(property.isFinal() ? " final" : ""));
}

QString parameterList(const QMetaMethod &method, bool withNames)
{
    const QList<QByteArray> types = method.parameterTypes();
    const QList<QByteArray> names = method.parameterNames();
    QStringList parameters;
    for (int i = 0; i < types.size(); ++i) {
        parameters.append(plainType(types.at(i)));
        if (withNames)
            parameters.last() += QLatin1Char(' ') + QString::fromLatin1(names.at(i));
    }
    return QLatin1Char('(') + parameters.join(QLatin1String(withNames ? ", " : ","))
           + QLatin1Char(')');
}

QString describeMethod(const QMetaMethod &method)
{
    static const QMap<QMetaMethod::Access, QString> accesses{
        {QMetaMethod::Private, QStringLiteral("private")},
        {QMetaMethod::Protected, QStringLiteral("protected")},
        {QMetaMethod::Public, QStringLiteral("public")}};
    const QString name = QString::fromLatin1(method.name());
    switch (method.methodType()) {
    case QMetaMethod::Signal:
        return QStringLiteral("signal ") + name + parameterList(method, true);
    case QMetaMethod::Slot:
        return QStringLiteral("slot %1 %2").arg(accesses.value(method.access()), name)
               + parameterList(method, false);
    default:
        return QStringLiteral("method %1 %2").arg(plainType(method.typeName()), name)
               + parameterList(method, false);
    }
}

QString describeEnum(const QMetaEnum &metaEnum)
{
    QString line = QStringLiteral("enum ") + QString::fromLatin1(metaEnum.name());
    for (int i = 0; i < metaEnum.keyCount(); ++i)
        line += QStringLiteral(" %1=%2")
                    .arg(QString::fromLatin1(metaEnum.key(i)))
                    .arg(metaEnum.value(i));
    return line;
}

// The class's own members, in the order of the tables.
QStringList describe(const QMetaObject *metaObject)
{
    QStringList lines;
    lines.append(QStringLiteral("class %1 : %2")
                     .arg(QString::fromLatin1(metaObject->className()),
                          QString::fromLatin1(metaObject->superClass()->className())));
    for (int i = metaObject->propertyOffset(); i < metaObject->propertyCount(); ++i)
        lines.append(describeProperty(metaObject->property(i)));
    for (auto type : {QMetaMethod::Signal, QMetaMethod::Slot, QMetaMethod::Method}) {
        for (int i = metaObject->methodOffset(); i < metaObject->methodCount(); ++i) {
            if (metaObject->method(i).methodType() == type)
                lines.append(describeMethod(metaObject->method(i)));
        }
    }
    for (int i = metaObject->enumeratorOffset(); i < metaObject->enumeratorCount(); ++i)
        lines.append(describeEnum(metaObject->enumerator(i)));
    return lines;
}

// "method bool load(QString[,QString,int])" is three methods, the longest first.
QStringList withOptionalParameters(const QString &line)
{
    static const QRegularExpression optional(QStringLiteral("^(.*)\\[(,?)(.*)\\]\\)$"));
    const QRegularExpressionMatch match = optional.match(line);
    if (!match.hasMatch())
        return {line};
    const QStringList types = match.captured(3).split(QLatin1Char(','));
    QStringList lines;
    for (int count = types.size(); count >= 0; --count) {
        lines.append(match.captured(1) + (count > 0 ? match.captured(2) : QString())
                     + QStringList(types.mid(0, count)).join(QLatin1Char(',')) + QLatin1Char(')'));
    }
    return lines;
}

QStringList expectedLines(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QStringList lines;
    const QStringList rows = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString &row : rows) {
        const QString line = row.simplified();
        if (!line.isEmpty() && !line.startsWith(QLatin1Char('#')))
            lines.append(withOptionalParameters(line));
    }
    return lines;
}

// A "?" in the table stands for any one word.
bool matches(const QString &line, const QString &expected)
{
    const QString pattern = QRegularExpression::escape(expected).replace(QLatin1String("\\?"),
                                                                         QLatin1String("[^ ,()]+"));
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(line).hasMatch();
}

bool contains(const QStringList &lines, const QString &expected)
{
    return std::any_of(lines.begin(), lines.end(),
                       [&](const QString &line) { return matches(line, expected); });
}

// What is missing, what is too much, or else the first line out of its order; empty if all is well.
QString difference(const QStringList &actual, const QStringList &expected)
{
    QStringList report;
    for (const QString &line : expected) {
        if (!contains(actual, line))
            report.append(QStringLiteral("missing: ") + line);
    }
    for (const QString &line : actual) {
        if (std::none_of(expected.begin(), expected.end(),
                         [&](const QString &row) { return matches(line, row); }))
            report.append(QStringLiteral("not in the table: ") + line);
    }
    for (int i = 0; report.isEmpty() && i < expected.size(); ++i) {
        if (!matches(actual.value(i), expected.at(i)))
            report.append(QStringLiteral("out of order: ") + actual.value(i)
                          + QStringLiteral("\n    expected here: ") + expected.at(i));
    }
    return report.join(QLatin1Char('\n'));
}

} // namespace

void tst_MetaObjects::initTestCase()
{
    TessalinePlugin().registerTypes("Zemrik.Tessaline");
}

void tst_MetaObjects::metaObjectIsAsTheTableSays_data()
{
    QTest::addColumn<QString>("path");
    const QDir folder(QFINDTESTDATA("metaobjects"));
    const QFileInfoList tables = folder.entryInfoList({"*.txt"}, QDir::Files, QDir::Name);
    for (const QFileInfo &table : tables)
        QTest::newRow(qPrintable(table.completeBaseName())) << table.filePath();
}

void tst_MetaObjects::metaObjectIsAsTheTableSays()
{
    QFETCH(QString, path);
    const QByteArray pointer = QByteArray(QTest::currentDataTag()) + '*';
    const QMetaObject *metaObject = QMetaType::metaObjectForType(QMetaType::type(pointer));
    QVERIFY2(metaObject, (pointer + " is not registered").constData());

    const QStringList expected = expectedLines(path);
    QVERIFY(!expected.isEmpty());

    const QString problems = difference(describe(metaObject), expected);
    QVERIFY2(problems.isEmpty(), qPrintable(QLatin1Char('\n') + problems));
}

void tst_MetaObjects::pointerAndListAreMetaTypes()
{
    const QByteArray name = QTest::currentDataTag();
    QVERIFY(QMetaType::type(name + '*') != QMetaType::UnknownType);
    QVERIFY(QMetaType::type("QQmlListProperty<" + name + '>') != QMetaType::UnknownType);
}

// Without the class in front nobody but the class itself finds the type.
void tst_MetaObjects::enumsOfParametersNameTheirClass()
{
    const QByteArray pointer = QByteArray(QTest::currentDataTag()) + '*';
    const QMetaObject *metaObject = QMetaType::metaObjectForType(QMetaType::type(pointer));
    QVERIFY(metaObject);
    for (int i = metaObject->methodOffset(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        const QList<QByteArray> types = method.parameterTypes() << QByteArray(method.typeName());
        for (const QByteArray &type : types)
            QVERIFY2(metaObject->indexOfEnumerator(type.constData()) < 0,
                     method.methodSignature().constData());
    }
}

void tst_MetaObjects::everyRegisteredClassHasATable()
{
    QFile source(qEnvironmentVariable("TESSALINE_SOURCE_DIR") + "/src/plugin/TessalinePlugin.cpp");
    QVERIFY(source.open(QIODevice::ReadOnly));
    const QDir folder(QFINDTESTDATA("metaobjects"));
    const QRegularExpression row("^ +(?:un)?creatable<(\\w+)>\\(uri",
                                 QRegularExpression::MultilineOption);
    auto matches = row.globalMatch(QString::fromUtf8(source.readAll()));
    QVERIFY(matches.hasNext());
    while (matches.hasNext()) {
        const QString className = matches.next().captured(1);
        QVERIFY2(folder.exists(className + ".txt"), qPrintable(className));
    }
}

TESSALINE_TEST_MAIN(tst_MetaObjects)
#include "tst_MetaObjects.moc"
