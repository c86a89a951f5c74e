// Fuzz target: orv::ds::HashMap<String, StringVector> against a
// std::unordered_map model, over sequences of set, find, clear, copy and
// assignment on two maps, one of them current.
//
// Input: a list of operations, each one byte whose low 3 bits choose it:
//   0, 1, 2  set     a key, a count byte (0-3 values, modulo 4), then one
//                    key per value: the list stored
//   3        find    a key
//   4        clear
//   5        copy    the current map is replaced by a copy of itself
//   6        assign  map `from` is copy-assigned to map `to`: `from` is the
//                    current map, or the other one when bit 3 is set; `to`
//                    is `from` itself when bit 4 is set, else the other one
//   7        switch  the other map becomes the current one
// A key is a length byte (0-3 characters, modulo 4), then one byte per
// character, taken modulo 16 from "abcdefghABCD01 .". A missing byte reads 0.
// The model tells keys apart by their text, the map by their 64-bit hash:
// the two agree because no two of these 4369 keys share a hash. After each
// operation, the current map is checked against its model: a find of the
// operation's key (none for operations 4 to 7), then a walk over all nodes.

#include "fuzz_check.h"

#include <orv/ds/hash_map.h>
#include <orv/string_vector.h>

#include <memory>
#include <set>
#include <unordered_map>

namespace {

using orv::String;
using orv::StringVector;
using Map = orv::ds::HashMap<String, StringVector>;
using Model = std::unordered_map<std::string, StringVector>; // each key and the list handle stored under it

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::size_t pos = 0;
    auto const byte = [&] { return pos < size ? data[pos++] : 0u; };
    auto const key = [&] {
        std::string text(byte() % 4u, ' ');
        for (char& c : text) {
            c = "abcdefghABCD01 ."[byte() % 16u];
        }
        return String(std::string_view(text));
    };
    std::unique_ptr<Map> maps[2] = {std::make_unique<Map>(), std::make_unique<Map>()};
    Model models[2];
    std::size_t current = 0;
    while (pos < size) {
        unsigned const op = byte();
        String const k = op % 8 < 4 ? key() : String();
        if (op % 8 < 3) {
            StringVector list; // a fresh list per set, never changed: copies of the map share it
            for (unsigned n = byte() % 4u; n > 0; --n) {
                list.push_back(key());
            }
            FUZZ_CHECK(&maps[current]->set(k, list) == maps[current]->find(k),
                       "set returns the value that find then gives");
            models[current][std::string(k.view())] = list;
        } else if (op % 8 == 4) {
            maps[current]->clear();
            models[current].clear();
        } else if (op % 8 == 5) {
            maps[current] = std::make_unique<Map>(*maps[current]); // the original is destroyed here
        } else if (op % 8 == 6) {
            std::size_t const from = (op & 8u) != 0 ? 1 - current : current;
            std::size_t const to = (op & 16u) != 0 ? from : 1 - from;
            *maps[to] = *maps[from];
            models[to] = models[from];
        } else if (op % 8 == 7) {
            current = 1 - current;
        }
        // The current map holds its model's keys, each once, with the list stored last.
        Map const& map = *maps[current];
        Model const& model = models[current];
        auto const it = model.find(std::string(k.view()));
        FUZZ_CHECK(it == model.end() ? !map.find(k)
                                     : map.find(k) && map.find(k)->body() == it->second.body(),
                   "find gives the list stored last under a key, or null");
        std::set<std::string_view> seen;
        std::uint64_t bucket = 0;
        for (Map::Node const& node : map) {
            auto const stored = model.find(std::string(node.key.view()));
            Map::Bucket const& home = map.bucket(node.hash & 0xFFu);
            FUZZ_CHECK(stored != model.end() && node.value.body() == stored->second.body() &&
                           node.hash == node.key.hash() && seen.insert(node.key.view()).second &&
                           (node.hash & 0xFFu) >= bucket && home.begin() <= &node &&
                           &node < home.end(),
                       "iteration visits each stored key once, bucket by bucket, with the list "
                       "stored last");
            bucket = node.hash & 0xFFu;
        }
        FUZZ_CHECK(seen.size() == model.size() && map.size() == model.size(),
                   "size() and iteration count every key");
    }
    return 0;
}
