#include <orv/ds/hash_map.h>
#include <orv/string.h>
#include <orv/string_vector.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <vector>

// Lets failure messages show a String's text.
namespace orv {
inline void PrintTo(String const& text, std::ostream* out) { *out << '"' << text.view() << '"'; }
} // namespace orv

namespace {

using orv::String;
using orv::StringVector;

/// A value that counts the live instances and the copies made of it.
struct Counted {
    static inline int live = 0;
    static inline int copies = 0;

    int value = 0;

    Counted() { ++live; }
    explicit Counted(int v) : value(v) { ++live; }
    Counted(Counted const& other) : value(other.value)
    {
        ++live;
        ++copies;
    }
    Counted& operator=(Counted const& other)
    {
        value = other.value;
        ++copies;
        return *this;
    }
    ~Counted() { --live; }
};

using CountedMap = orv::ds::HashMap<String, Counted>;
using ViewsMap = orv::ds::HashMap<String, StringVector>;

String name(int index) { return String::format("display%d", index); }

std::uint8_t bucketOf(String const& key) { return static_cast<std::uint8_t>(key.hash() & 0xFFu); }

/// `count` generated names that all fall into one bucket, in generation order.
std::vector<String> namesInOneBucket(std::size_t count)
{
    std::map<std::uint8_t, std::vector<String>> byBucket;
    for (int i = 0;; ++i) {
        String key = name(i);
        std::vector<String>& group = byBucket[bucketOf(key)];
        group.push_back(key);
        if (group.size() == count) {
            return group;
        }
    }
}

class HashMap : public testing::Test {
protected:
    void SetUp() override { Counted::live = Counted::copies = 0; }
    void TearDown() override { EXPECT_EQ(Counted::live, 0) << "a value was leaked or destroyed twice"; }
};

TEST_F(HashMap, NewMapIsEmptyWithZeroLengthBuckets)
{
    CountedMap const map;
    EXPECT_EQ(map.size(), 0u);
    EXPECT_EQ(map.find(String("ACES")), nullptr);
    EXPECT_EQ(map.find(String()), nullptr);
    for (std::size_t i = 0; i < CountedMap::kBucketCount; ++i) {
        EXPECT_NE(map.bucket(i).data, nullptr);
        EXPECT_EQ(map.bucket(i).size, 0u);
        EXPECT_EQ(map.bucket(i).capacity, 0u);
    }
    EXPECT_EQ(map.begin(), map.end());
    EXPECT_EQ(Counted::live, 0);
}

TEST_F(HashMap, KeysSharingTheLowByteAreBothFound)
{
    std::vector<String> const keys = namesInOneBucket(2);
    ASSERT_NE(keys[0].hash(), keys[1].hash());

    CountedMap map;
    map.set(keys[0], Counted(10));
    map.set(keys[1], Counted(20));
    ASSERT_NE(map.find(keys[0]), nullptr);
    ASSERT_NE(map.find(keys[1]), nullptr);
    EXPECT_EQ(map.find(keys[0])->value, 10);
    EXPECT_EQ(map.find(keys[1])->value, 20);
    EXPECT_EQ(map.bucket(bucketOf(keys[0])).size, 2u);
    EXPECT_EQ(map.size(), 2u);
}

TEST_F(HashMap, SetOnAPresentKeyReplacesTheValueOnly)
{
    CountedMap map;
    String const first("ACES");
    map.set(first, Counted(1));
    Counted& stored = map.set(String::format("AC%s", "ES"), Counted(2));
    EXPECT_EQ(stored.value, 2);
    EXPECT_EQ(&stored, map.find(first));
    EXPECT_EQ(map.size(), 1u);
    // The node keeps the key it was created with.
    EXPECT_EQ(map.begin()->key.body(), first.body());
}

TEST_F(HashMap, BucketGrowsByDoublingAndKeepsOrder)
{
    std::vector<String> const keys = namesInOneBucket(9);
    std::uint8_t const index = bucketOf(keys[0]);
    std::uint64_t const expectedCapacity[] = {2, 2, 4, 4, 8, 8, 8, 8, 16};

    CountedMap map;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        map.set(keys[i], Counted(static_cast<int>(i)));
        EXPECT_EQ(map.bucket(index).capacity, expectedCapacity[i]) << "after node " << i + 1;
    }
    auto const& bucket = map.bucket(index);
    ASSERT_EQ(bucket.size, 9u);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        EXPECT_EQ(bucket.data[i].hash, keys[i].hash());
        EXPECT_EQ(bucket.data[i].key, keys[i]);
        EXPECT_EQ(bucket.data[i].value.value, static_cast<int>(i));
    }
}

TEST_F(HashMap, ClearReleasesEveryBucketAndTheMapRefills)
{
    CountedMap map;
    for (int i = 0; i < 600; ++i) {
        map.set(name(i), Counted(i));
    }
    map.clear();
    EXPECT_EQ(map.size(), 0u);
    EXPECT_EQ(Counted::live, 0);
    for (std::size_t i = 0; i < CountedMap::kBucketCount; ++i) {
        EXPECT_EQ(map.bucket(i).data, nullptr);
        EXPECT_EQ(map.bucket(i).capacity, 0u);
    }
    EXPECT_EQ(map.find(name(3)), nullptr);

    map.set(name(3), Counted(33));
    ASSERT_NE(map.find(name(3)), nullptr);
    EXPECT_EQ(map.find(name(3))->value, 33);
    EXPECT_EQ(map.size(), 1u);
}

TEST_F(HashMap, CopyHasTightBucketsAndSharesTheValueLists)
{
    ViewsMap source;
    String const display("sRGB Monitor");
    StringVector const views{String("ACES 1.0 SDR"), String("Raw")};
    source.set(display, views);
    for (int i = 0; i < 20; ++i) {
        source.set(name(i), StringVector{name(i)});
    }

    ViewsMap copy(source);
    EXPECT_EQ(copy.size(), source.size());
    for (std::size_t i = 0; i < ViewsMap::kBucketCount; ++i) {
        EXPECT_EQ(copy.bucket(i).capacity, copy.bucket(i).size);
        EXPECT_NE(copy.bucket(i).data, source.bucket(i).data);
    }
    ASSERT_NE(copy.find(display), nullptr);
    EXPECT_EQ(copy.find(display)->body(), views.body());

    // A change to the shared list shows through both maps...
    copy.find(display)->push_back(String("Log"));
    EXPECT_EQ(source.find(display)->size(), 3u);
    // ...while replacing the copy's value leaves the source's node alone.
    copy.set(display, StringVector{String("Film")});
    EXPECT_EQ(source.find(display)->body(), views.body());
    EXPECT_EQ((*copy.find(display))[0], "Film");

    ViewsMap assigned;
    assigned = source;
    EXPECT_EQ(assigned.size(), source.size());
    EXPECT_EQ(assigned.find(name(7))->body(), source.find(name(7))->body());
}

TEST_F(HashMap, CopyingMakesOneCopyPerNode)
{
    CountedMap source;
    for (int i = 0; i < 40; ++i) {
        source.set(name(i), Counted(i));
    }
    Counted::copies = 0;
    CountedMap const copy(source);
    EXPECT_EQ(Counted::copies, 40);
    EXPECT_EQ(copy.find(name(39))->value, 39);
}

TEST_F(HashMap, IterationVisitsEveryNodeOnce)
{
    CountedMap map;
    std::set<std::uint64_t> expected;
    for (int i = 0; i < 700; ++i) {
        map.set(name(i), Counted(i));
        expected.insert(name(i).hash());
    }
    std::multiset<std::uint64_t> visited;
    for (auto const& node : map) {
        visited.insert(node.hash);
        EXPECT_EQ(node.key.hash(), node.hash);
        EXPECT_EQ(node.key, name(node.value.value));
    }
    EXPECT_EQ(visited.size(), 700u);
    EXPECT_EQ(std::set<std::uint64_t>(visited.begin(), visited.end()), expected);
}

} // namespace
