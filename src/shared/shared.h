#pragma once

#include "fkit/export.h"

#include <cstddef>
#include <utility>

namespace Vorkel {

template <typename T>
class SharedPtr;

/// Base of what is counted. The count is a plain number: counted objects stay on one thread.
class VORKEL_EXPORT Shared
{
public:
    Shared() = default;
    Shared(const Shared &) = delete;
    Shared &operator=(const Shared &) = delete;
    virtual ~Shared() = default;

private:
    template <typename T>
    friend class SharedPtr;

    mutable int m_references = 0;
};

/// Keeps a `Shared` alive; the last pointer deletes it.
template <typename T>
class SharedPtr
{
public:
    SharedPtr() = default;
    SharedPtr(std::nullptr_t) {}
    explicit SharedPtr(T *object)
        : m_object(object)
    {
        acquire();
    }
    SharedPtr(const SharedPtr &other)
        : SharedPtr(other.m_object)
    {
    }
    SharedPtr(SharedPtr &&other) noexcept
        : m_object(std::exchange(other.m_object, nullptr))
    {
    }
    template <typename Derived>
    SharedPtr(const SharedPtr<Derived> &other)
        : SharedPtr(other.get())
    {
    }
    ~SharedPtr() { release(); }

    SharedPtr &operator=(SharedPtr other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }

    [[nodiscard]] T *get() const { return m_object; }
    T *operator->() const { return m_object; }
    T &operator*() const { return *m_object; }
    explicit operator bool() const { return m_object; }
    /// Whether nobody else keeps the object alive.
    [[nodiscard]] bool isOnly() const { return m_object && m_object->m_references == 1; }

    friend bool operator==(const SharedPtr &a, const SharedPtr &b) { return a.m_object == b.m_object; }
    friend bool operator==(const SharedPtr &a, std::nullptr_t) { return !a.m_object; }

private:
    void acquire()
    {
        if (m_object)
            ++m_object->m_references;
    }

    void release()
    {
        if (m_object && --m_object->m_references == 0)
            delete m_object;
    }

    T *m_object = nullptr;
};

} // namespace Vorkel
