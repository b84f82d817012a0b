#pragma once

#include <QString>

// The addresses that the library knows by itself.
namespace Endpoints {

// The portal that stands where no other one is configured. The name never resolves, on purpose:
// whoever runs a portal configures its address.
inline QString publicPortal()
{
    return QStringLiteral("http://portal.zemrik.example");
}

} // namespace Endpoints
