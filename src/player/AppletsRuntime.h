#pragma once

#include "plugin/TessalineGlobal.h"

class AppletsPlayer;

// The registry of the one player of the process. The player is kept as a dynamic property of the
// application object, "AppletsPlayer", so that every library in the process finds the same one.
class TESSALINE_EXPORT AppletsRuntime
{
public:
    AppletsRuntime() = delete;

    // Registers the player; ends the process if there is one already. A player does this itself
    // when it is constructed.
    static void initialize(AppletsPlayer *player);

    // Replaces the registered player. QML never deletes it.
    static void setAppletsPlayer(AppletsPlayer *player);

    // The registered player. With none, logs a critical line and makes a default one, which nobody
    // owns: it lives until the process ends.
    static AppletsPlayer *appletsPlayer();

private:
    friend class AppletsPlayer;

    // Forgets the player if it is the registered one, so that nobody meets it after its end.
    static void release(const AppletsPlayer *player);
};
