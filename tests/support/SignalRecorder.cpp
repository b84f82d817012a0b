#include "support/SignalRecorder.h"

#include <QMetaMethod>

// As QSignalSpy does it: each signal is connected to a method number behind QObject's own, which
// no moc'ed code answers but qt_metacall().
SignalRecorder::SignalRecorder(QObject *sender)
{
    const int firstMethod = QObject::staticMetaObject.methodCount();
    const QMetaObject *metaObject = sender->metaObject();
    for (int i = firstMethod; i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        // A signal with default arguments stands there once more for each form.
        if (method.methodType() != QMetaMethod::Signal || method.attributes() & QMetaMethod::Cloned)
            continue;
        QMetaObject::connect(sender, i, this, firstMethod + m_signals.size(), Qt::DirectConnection,
                             nullptr);
        m_signals.append(method.name());
    }
}

QStringList SignalRecorder::take()
{
    QStringList names;
    m_names.swap(names);
    return names;
}

int SignalRecorder::qt_metacall(QMetaObject::Call call, int id, void **arguments)
{
    id = QObject::qt_metacall(call, id, arguments);
    if (id < 0 || call != QMetaObject::InvokeMetaMethod)
        return id;
    m_names.append(QString::fromLatin1(m_signals.at(id)));
    return -1;
}
