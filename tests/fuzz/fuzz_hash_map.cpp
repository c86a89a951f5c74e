// Fuzz target: orv::ds::HashMap<String, StringVector> against a model built on
// std::unordered_map, over sequences of set, find, clear and copy.
//
// Two maps, A and B, each with its own model, and a "current" one that most
// operations act on. The input is a list of operations; each starts with one
// byte whose low 3 bits choose it:
//   0, 1, 2  set     key, count byte (0-3 strings), then one key per string
//   3        find    key
//   4        clear
//   5        copy    the current map becomes a copy-constructed one and the
//                    original is destroyed; the copy goes on being used
//   6        assign  the other map is copy-assigned from the current one
//                    (bit 3 of the op byte: the reverse direction; bit 4:
//                    the current one is assigned to itself)
//   7        switch  the other map becomes the current one
// A key is one length byte (0-3 characters) then one byte per character,
// from a 16-character alphabet. Keys and value strings therefore repeat
// often, and with 4,369 distinct keys over 256 buckets, many share the low
// 8 bits of their hash. A missing byte reads as 0.
//
// The map tells keys apart by their 64-bit hash alone; the model tells them
// apart by their text. The two agree because no two keys of this alphabet
// share a 64-bit hash, which LLVMFuzzerInitialize verifies once.

#include "fuzz_check.h"

#include <orv/ds/hash_map.h>
#include <orv/string.h>
#include <orv/string_vector.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace {

using orv::String;
using orv::StringVector;
using Map = orv::ds::HashMap<String, StringVector>;

constexpr char kAlphabet[] = "abcdefghABCD01 .";
constexpr std::size_t kAlphabetSize = sizeof(kAlphabet) - 1;
static_assert(kAlphabetSize == 16);
constexpr std::size_t kMaxKeyLength = 3;

/// The model of one map: each key's value list and its insertion number
/// (nodes of one bucket are iterated in insertion order; `clear` starts over).
struct Model {
    struct Entry {
        std::vector<std::string> values;
        std::uint64_t order = 0;
    };
    std::unordered_map<std::string, Entry> entries;
    std::uint64_t nextOrder = 0;
};

/// Reads the input bytes; past the end every byte is 0.
class Reader {
public:
    Reader(std::uint8_t const* data, std::size_t size) : m_data(data), m_size(size) {}

    bool done() const { return m_pos >= m_size; }
    std::uint8_t byte() { return m_pos < m_size ? m_data[m_pos++] : 0; }
    std::string key()
    {
        std::size_t const length = byte() % (kMaxKeyLength + 1);
        std::string text;
        for (std::size_t i = 0; i < length; ++i) {
            text += kAlphabet[byte() % kAlphabetSize];
        }
        return text;
    }

private:
    std::uint8_t const* m_data;
    std::size_t m_size;
    std::size_t m_pos = 0;
};

String toString(std::string const& text) { return text.empty() ? String() : String(text.data(), text.size()); }

bool sameList(StringVector const& list, std::vector<std::string> const& expected)
{
    if (list.size() != expected.size()) {
        return false;
    }
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (list[i].view() != expected[i]) {
            return false;
        }
    }
    return true;
}

/// The lookup of `key` agrees with the model, through the mutable and the
/// const overloads alike.
void checkFind(Map& map, Model const& model, std::string const& key)
{
    String const k = toString(key);
    StringVector* found = map.find(k);
    StringVector const* foundConst = static_cast<Map const&>(map).find(k);
    FUZZ_CHECK(found == foundConst, "const and mutable find agree");
    auto const it = model.entries.find(key);
    if (it == model.entries.end()) {
        FUZZ_CHECK(found == nullptr, "find of an absent key gives null");
        return;
    }
    FUZZ_CHECK(found != nullptr, "find of a stored key gives its value");
    FUZZ_CHECK(sameList(*found, it->second.values), "find gives the last value stored under the key");
}

/// Every node, by iteration and by bucket, against the model: same keys and
/// values, each node in the bucket of its hash's low 8 bits with the key's
/// hash, buckets in order, nodes of a bucket in insertion order.
void checkContents(Map const& map, Model const& model)
{
    std::uint64_t const size = map.size();
    FUZZ_CHECK(size == model.entries.size(), "size() equals the number of distinct keys stored");

    std::unordered_set<std::string> seen;
    std::size_t previousBucket = 0;
    std::uint64_t previousOrder = 0;
    bool first = true;
    std::uint64_t visited = 0;
    for (Map::Node const& node : map) {
        ++visited;
        std::string const key(node.key.view());
        FUZZ_CHECK(node.hash == node.key.hash(), "a node's hash is its key's hash");
        FUZZ_CHECK(seen.insert(key).second, "each key is visited once");
        auto const it = model.entries.find(key);
        FUZZ_CHECK(it != model.entries.end(), "each visited key is stored");
        FUZZ_CHECK(sameList(node.value, it->second.values), "each visited value is the key's last stored value");

        std::size_t const bucket = static_cast<std::size_t>(node.hash & 0xFFu);
        FUZZ_CHECK(first || bucket >= previousBucket, "iteration visits the buckets in order");
        FUZZ_CHECK(first || bucket != previousBucket || it->second.order > previousOrder,
                   "iteration visits a bucket's nodes in insertion order");
        previousBucket = bucket;
        previousOrder = it->second.order;
        first = false;
    }
    FUZZ_CHECK(visited == size, "iteration visits size() nodes");

    std::uint64_t inBuckets = 0;
    for (std::size_t b = 0; b < Map::kBucketCount; ++b) {
        Map::Bucket const& bucket = map.bucket(b);
        FUZZ_CHECK(bucket.size <= bucket.capacity, "a bucket uses no more nodes than it holds");
        for (Map::Node const& node : bucket) {
            FUZZ_CHECK((node.hash & 0xFFu) == b, "a node lives in the bucket of its hash's low 8 bits");
            ++inBuckets;
        }
    }
    FUZZ_CHECK(inBuckets == size, "the buckets hold size() nodes");
}

struct Slot {
    std::unique_ptr<Map> map = std::make_unique<Map>();
    Model model;
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    // Every key the reader can produce has its own 64-bit hash, so the
    // model's text keys and the map's hash keys are the same keys.
    std::unordered_map<std::uint64_t, std::string> owners;
    std::vector<std::string> keys{std::string()};
    for (std::size_t length = 1; length <= kMaxKeyLength; ++length) {
        std::vector<std::string> longer;
        for (std::string const& key : keys) {
            if (key.size() + 1 == length) {
                for (std::size_t c = 0; c < kAlphabetSize; ++c) {
                    longer.push_back(key + kAlphabet[c]);
                }
            }
        }
        keys.insert(keys.end(), longer.begin(), longer.end());
    }
    for (std::string const& key : keys) {
        auto const [it, added] = owners.emplace(toString(key).hash(), key);
        FUZZ_CHECK(added, "the key alphabet has no two keys with one 64-bit hash");
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Reader in(data, size);
    Slot slots[2];
    std::size_t current = 0;
    std::size_t step = 0;

    while (!in.done()) {
        std::uint8_t const op = in.byte();
        Slot& cur = slots[current];
        Slot& other = slots[1 - current];
        switch (op & 7u) {
        case 0:
        case 1:
        case 2: {
            std::string const key = in.key();
            std::size_t const count = in.byte() % 4u;
            // A fresh list per set, never changed once stored: copies of the
            // map share their lists.
            StringVector list;
            std::vector<std::string> values;
            for (std::size_t i = 0; i < count; ++i) {
                values.push_back(in.key());
                list.push_back(toString(values.back()));
            }
            StringVector& stored = cur.map->set(toString(key), list);
            FUZZ_CHECK(sameList(stored, values), "set returns the stored value");
            FUZZ_CHECK(cur.map->find(toString(key)) == &stored, "set returns the value that find then gives");
            auto const [it, added] = cur.model.entries.try_emplace(key);
            if (added) {
                it->second.order = cur.model.nextOrder++;
            }
            it->second.values = values;
            break;
        }
        case 3:
            checkFind(*cur.map, cur.model, in.key());
            break;
        case 4:
            cur.map->clear();
            cur.model.entries.clear();
            FUZZ_CHECK(cur.map->size() == 0 && cur.map->begin() == cur.map->end(), "clear leaves the map empty");
            break;
        case 5: {
            auto copy = std::make_unique<Map>(*cur.map);
            checkContents(*copy, cur.model);
            cur.map = std::move(copy); // the original is destroyed here
            break;
        }
        case 6:
            if ((op & 0x10u) != 0) {
                Map& self = *cur.map;
                *cur.map = self;
            } else if ((op & 0x08u) != 0) {
                *cur.map = *other.map;
                cur.model = other.model;
            } else {
                *other.map = *cur.map;
                other.model = cur.model;
            }
            break;
        default:
            current = 1 - current;
            break;
        }

        Slot const& now = slots[current];
        FUZZ_CHECK(now.map->size() == now.model.entries.size(), "size() equals the number of distinct keys stored");
        if (++step % 8 == 0) {
            checkContents(*slots[0].map, slots[0].model);
            checkContents(*slots[1].map, slots[1].model);
        }
    }
    checkContents(*slots[0].map, slots[0].model);
    checkContents(*slots[1].map, slots[1].model);
    for (Slot& slot : slots) {
        for (auto const& [key, entry] : slot.model.entries) {
            checkFind(*slot.map, slot.model, key);
        }
    }
    return 0;
}
