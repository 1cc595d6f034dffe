// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroFuture>
#include <QCoroTask>
#include <QObject>
#include <QPointer>

#include <exception>
#include <type_traits>

namespace velquarin {

//! Ends a coroutine whose object went while it waited, and whoever waits for that coroutine. Nobody catches it.
class ObjectGone : public std::exception
{
};

//! What @p wait gives or throws, for as long as @p owner lives: afterwards the coroutine may use it without looking.
//! @p wait is a QCoro::Task or a QFuture; name it before, since older compilers lose what is made in the expression that
//! waits. Errors: ObjectGone, in place of any other, where @p owner went meanwhile.
template <template <typename> typename Wait, typename Value>
[[nodiscard]] QCoro::Task<Value> whileAlive(const QObject *owner, Wait<Value> wait)
{
    const QPointer guard(owner);
    try {
        if constexpr (std::is_void_v<Value>) {
            co_await wait;
            if (guard)
                co_return;
        } else {
            auto value = co_await wait;
            if (guard)
                co_return value;
        }
    } catch (...) {
        if (guard)
            throw;
    }
    throw ObjectGone();
}

}  // namespace velquarin
