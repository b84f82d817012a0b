#pragma once

#include <QString>
#include <QVariantMap>

#include <memory>

class Accounts;
class Certificate;
class Failures;
class ItemStore;

// The portal's REST interface over HTTP or HTTPS, on the loopback address only. Everything below
// /sharing/rest answers GET and POST alike, parameters in the query or a form, and JSON for "f" =
// "json" (compact) or "pjson" (indented). Failures are told in JSON with status 200, as clients of
// portals expect it, except where a file was asked for: there the status says it too.
class PortalServer
{
public:
    struct Settings
    {
        QString version;
        QVariantMap self;       // the answer of portals/self
        qint64 tokenLife = 0;   // milliseconds, for every token; 0: what the request asks for
        QString usersFile;      // the users' pictures lie beside it; may be empty
        bool accessLog = false; // a line per request on the standard error output, without names
        const Certificate *certificate = nullptr; // for HTTPS; must outlive the server
        Failures *failures = nullptr;             // of the tests; must outlive the server
    };

    PortalServer(const ItemStore &store, Accounts &accounts, const Settings &settings);
    ~PortalServer();

    // 0 takes a free port. False if the port is taken or not ours to use.
    bool bind(quint16 port);
    // Where clients reach it, without a trailing slash.
    QString url() const;
    // Returns after stop(), which another thread calls.
    bool run();
    void stop();

private:
    class Private;
    std::unique_ptr<Private> d;
};
