#pragma once
// Reference-counted bodies and the handle template that shares them.
//
// Every value type of the core library (String, StringVector, Path, File,
// Image) is a handle: an object whose one data member points at a heap body.
// Copying a handle shares the body; the last handle to go destroys it.

#include <atomic>
#include <cstdint>

namespace orv {

/// The interface of a shared body. `retain` and `release` come first in the
/// virtual table, in that order. A body destroys itself when `release` drops
/// its last reference.
class IRefCounted {
public:
    /// Adds one reference. Never fails.
    virtual void retain() const noexcept = 0;
    /// Drops one reference; destroys the body when it was the last one.
    virtual void release() const noexcept = 0;

protected:
    virtual ~IRefCounted() = default;
};

/// The standard body: an atomic count that starts at one (the reference of
/// the handle that creates the body). Derive bodies from it.
class RefCounted : public IRefCounted {
public:
    RefCounted() noexcept = default;
    RefCounted(RefCounted const&) = delete;
    RefCounted& operator=(RefCounted const&) = delete;

    void retain() const noexcept override { m_count.fetch_add(1, std::memory_order_relaxed); }
    void release() const noexcept override
    {
        if (m_count.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            delete this;
        }
    }
    /// The current number of references; for tests and diagnostics only.
    std::int32_t refCount() const noexcept { return m_count.load(std::memory_order_relaxed); }

protected:
    ~RefCounted() override = default;

private:
    mutable std::atomic<std::int32_t> m_count{1};
};

/// A handle on a body of type `B` (`IRefCounted` or `RefCounted`). A handle
/// without a body is a valid value. Copying retains, assignment retains the
/// new body before releasing the old one (so self-assignment is safe),
/// destruction releases. None of these allocate or throw.
template <class B>
class RefersTo {
public:
    RefersTo() noexcept = default;
    RefersTo(RefersTo const& other) noexcept : m_body(other.m_body)
    {
        if (m_body) {
            m_body->retain();
        }
    }
    RefersTo(RefersTo&& other) noexcept : m_body(other.m_body) { other.m_body = nullptr; }
    RefersTo& operator=(RefersTo const& other) noexcept
    {
        B* body = other.m_body;
        if (body) {
            body->retain();
        }
        B* old = m_body;
        m_body = body;
        if (old) {
            old->release();
        }
        return *this;
    }
    RefersTo& operator=(RefersTo&& other) noexcept
    {
        if (this != &other) {
            B* old = m_body;
            m_body = other.m_body;
            other.m_body = nullptr;
            if (old) {
                old->release();
            }
        }
        return *this;
    }
    virtual ~RefersTo()
    {
        if (m_body) {
            m_body->release();
        }
    }

    /// True when the handle refers to a body.
    bool hasBody() const noexcept { return m_body != nullptr; }
    /// The body itself, or null; the handle keeps ownership.
    B* body() const noexcept { return m_body; }

protected:
    /// Takes over one reference to `body` (may be null) as this handle's body.
    explicit RefersTo(B* body) noexcept : m_body(body) {}
    /// Replaces the body by `body`, whose reference this handle takes over.
    void adopt(B* body) noexcept
    {
        B* old = m_body;
        m_body = body;
        if (old) {
            old->release();
        }
    }

private:
    B* m_body = nullptr;
};

} // namespace orv
