#pragma once

#include "portal/Certificate.h"

#include <QString>

#include <memory>

class QCommandLineParser;

// What the command lines of our servers have in common: --port, --https and --certificate, and no
// arguments besides the options.
class ServerOptions
{
public:
    static void add(QCommandLineParser &parser, quint16 usualPort);
    // Tells people on the standard error output what is wrong; the exit status.
    static int fail(const QString &message);

    // False with a message for people.
    bool read(const QCommandLineParser &parser, QString &error);
    // Called once the port is ours: the certificate of a server that has it already stays.
    bool writeCertificate(QString &error) const;

    quint16 port() const { return m_port; }
    const Certificate *certificate() const { return m_certificate.get(); } // null without --https

private:
    quint16 m_port = 0;
    std::unique_ptr<Certificate> m_certificate;
    QString m_certificatePath;
};
