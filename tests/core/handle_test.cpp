// Copying, assigning and destroying handles, observed through a body that
// records every retain and release.

#include <orv/ref_counted.h>
#include <orv/string.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

/// What happened to one counting body: 'r' per retain, 'x' per release.
struct Events {
    std::string calls;
    bool destroyed = false;
};

class CountingBody final : public orv::RefCounted {
public:
    explicit CountingBody(Events& events) : m_events(events) {}
    void retain() const noexcept override
    {
        m_events.calls += 'r';
        RefCounted::retain();
    }
    void release() const noexcept override
    {
        m_events.calls += 'x';
        RefCounted::release();
    }

private:
    ~CountingBody() override { m_events.destroyed = true; }
    Events& m_events;
};

class Handle : public orv::RefersTo<orv::IRefCounted> {
public:
    Handle() = default;
    explicit Handle(orv::IRefCounted* body) : RefersTo(body) {}
};

int countOf(Handle const& handle)
{
    return static_cast<orv::RefCounted const*>(handle.body())->refCount();
}

TEST(Handle, CopySharesTheBodyWithOneRetain)
{
    Events events;
    Handle first(new CountingBody(events));
    {
        Handle copy(first);
        EXPECT_EQ(copy.body(), first.body());
        EXPECT_EQ(countOf(first), 2);
        EXPECT_EQ(events.calls, "r");
    }
    EXPECT_EQ(events.calls, "rx");
    EXPECT_FALSE(events.destroyed);
    EXPECT_EQ(countOf(first), 1);
}

TEST(Handle, LastHandleDestroysTheBody)
{
    Events events;
    {
        Handle first(new CountingBody(events));
        Handle second = first;
        first = Handle();
        EXPECT_FALSE(events.destroyed);
    }
    EXPECT_TRUE(events.destroyed);
    EXPECT_EQ(events.calls, "rxx");
}

TEST(Handle, SelfAssignmentRetainsBeforeReleasing)
{
    Events events;
    Handle handle(new CountingBody(events));
    Handle& alias = handle;
    handle = alias;
    // The retain comes first, so the count never drops to zero in between.
    EXPECT_EQ(events.calls, "rx");
    EXPECT_FALSE(events.destroyed);
    EXPECT_EQ(countOf(handle), 1);
}

TEST(Handle, AssignmentReleasesTheOldBody)
{
    Events oldEvents;
    Events newEvents;
    Handle target(new CountingBody(oldEvents));
    Handle source(new CountingBody(newEvents));
    target = source;
    EXPECT_TRUE(oldEvents.destroyed);
    EXPECT_EQ(target.body(), source.body());
    EXPECT_EQ(countOf(source), 2);
}

TEST(Handle, HandleWithoutBodyCopiesAssignsAndDestroys)
{
    Handle empty;
    Handle copy(empty);
    EXPECT_FALSE(copy.hasBody());
    Handle& alias = copy;
    copy = alias;
    EXPECT_FALSE(copy.hasBody());

    Events events;
    Handle bodied(new CountingBody(events));
    bodied = empty;
    EXPECT_FALSE(bodied.hasBody());
    EXPECT_TRUE(events.destroyed);
}

TEST(Handle, MoveTransfersTheBodyWithoutCounting)
{
    Events events;
    Handle source(new CountingBody(events));
    Handle target(std::move(source));
    EXPECT_FALSE(source.hasBody()); // NOLINT(bugprone-use-after-move): a moved-from handle is left without a body
    EXPECT_EQ(countOf(target), 1);
    Handle other;
    other = std::move(target);
    EXPECT_EQ(countOf(other), 1);
    EXPECT_EQ(events.calls, "");
}

TEST(Handle, StringCopiesShareOneBody)
{
    orv::String const name("ACES2065-1");
    orv::String const copy = name;
    EXPECT_EQ(copy.body(), name.body());
    EXPECT_EQ(static_cast<orv::RefCounted const*>(name.body())->refCount(), 2);

    orv::String const empty;
    orv::String const emptyCopy = empty;
    EXPECT_FALSE(emptyCopy.hasBody());
}

} // namespace
