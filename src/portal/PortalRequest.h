#pragma once

#include "network/NetworkRequest.h"

class PortalObject;
class TessalineError;

// A request whose completion is read the portal's way: an HTTP 200 answer may still be a failure,
// told by the key "error" of its JSON. Never uploads a file for a value: its uploadPrefix is empty.
//
// Signals at the end of a transfer: completed(response) for a JSON answer, completed() for any
// other response type, error(error) for a JSON error. An HTTP status other than 200 emits none of
// them; see NetworkRequest's own. The object that error() carries has no parent, and receivers
// don't delete it.
class TESSALINE_EXPORT PortalRequest : public NetworkRequest
{
    Q_OBJECT

public:
    explicit PortalRequest(QObject *parent = nullptr);

    PortalObject *portal() const { return m_portal; }
    void setPortal(PortalObject *portal) { m_portal = portal; } // not owned

signals:
    void completed(QVariantMap response);
    void completed();
    void error(TessalineError *error);

private slots:
    void onReadyStateChanged();

private:
    PortalObject *m_portal = nullptr;
};
