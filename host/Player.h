#pragma once

#include <Tessaline/AppletsPlayer.h>

#include <memory>
#include <vector>

// The player of this program. Its applets can reach it as Tessaline.player, and find the modules of
// the --import options and the one this program belongs to.
class Player : public AppletsPlayer
{
    Q_OBJECT

public:
    Player();
    ~Player() override;

    AppView *createAppView(const QString &path, QWindow *parent) override;

private:
    // Top-level views have no owner of their own; they must go before the application does, so that
    // applets are torn down in order and their settings reach the disk.
    std::vector<std::unique_ptr<AppView>> m_topLevelViews;
};
