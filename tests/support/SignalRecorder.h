#pragma once

#include <QObject>
#include <QStringList>
#include <QVector>

// Keeps the names of all signals of an object in the order they come, without QObject's own.
//
//     SignalRecorder signals_(&info);
//     info.refresh();
//     QCOMPARE(signals_.names(), QStringList({"itemIdChanged", "titleChanged"}));
class SignalRecorder : public QObject
{
public:
    explicit SignalRecorder(QObject *sender);

    QStringList names() const { return m_names; }
    // The names since the last take.
    QStringList take();

    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override;

private:
    QVector<QByteArray> m_signals;
    QStringList m_names;
};
