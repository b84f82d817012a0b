#pragma once

#include <grp.h>
#include <unistd.h>

#include <vector>

// File permissions mean nothing to root. While this lives, a process of root acts as "nobody", so
// that a test of unwritable or unreadable files works for everybody. What the test needs must be
// reachable for others: an IsolatedHome isn't, unless its folder is opened to them.
class UnprivilegedUser
{
public:
    UnprivilegedUser()
        : m_changed(geteuid() == 0)
    {
        if (!m_changed)
            return;
        m_groups.resize(static_cast<size_t>(getgroups(0, nullptr)));
        check(getgroups(static_cast<int>(m_groups.size()), m_groups.data()) >= 0);
        check(setgroups(0, nullptr) == 0);
        check(setresgid(nobody, nobody, 0) == 0);
        check(setresuid(nobody, nobody, 0) == 0);
    }
    ~UnprivilegedUser()
    {
        if (!m_changed)
            return;
        check(setresuid(0, 0, 0) == 0);
        check(setresgid(0, 0, 0) == 0);
        check(setgroups(m_groups.size(), m_groups.data()) == 0);
    }
    UnprivilegedUser(const UnprivilegedUser &) = delete;
    UnprivilegedUser &operator=(const UnprivilegedUser &) = delete;

private:
    // A process with half of its rights is of no use to anybody.
    static void check(bool done)
    {
        if (!done)
            _exit(1);
    }

    static constexpr uid_t nobody = 65534;
    bool m_changed;
    std::vector<gid_t> m_groups;
};
