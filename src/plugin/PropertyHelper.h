#pragma once

#include <utility>

// The middle of a setter: stores the value and tells whether it was a new one.
//
//     void Sample::setTitle(const QString &title)
//     {
//         if (assignIfChanged(m_title, title))
//             emit titleChanged();
//     }
template <typename T, typename U>
[[nodiscard]] bool assignIfChanged(T &member, U &&value)
{
    if (member == value)
        return false;
    member = std::forward<U>(value);
    return true;
}

// A child that is made at its first use: returns the one in `member`, making it with `arguments`
// when there is none yet. The arguments carry the parent, which owns the child.
template <typename T, typename... Arguments>
T *lazyChild(T *&member, Arguments &&...arguments)
{
    if (!member)
        member = new T(std::forward<Arguments>(arguments)...);
    return member;
}
