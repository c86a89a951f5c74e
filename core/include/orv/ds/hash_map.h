#pragma once
// orv::ds::HashMap: a fixed table of 256 buckets keyed by a 64-bit hash.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace orv::ds {

/// One bucket: an array of `capacity` constructed elements, of which the
/// first `size` are in use, in the order they were appended. Owns its array
/// (allocated with array `new`). Allocation failures throw `std::bad_alloc`
/// and leave the bucket as it was.
template <class T>
struct Vector {
    T* data = nullptr;
    std::uint64_t size = 0;
    std::uint64_t capacity = 0;

    Vector() noexcept = default;
    Vector(Vector const& other) { assign(other); }
    Vector& operator=(Vector const& other)
    {
        assign(other);
        return *this;
    }
    /// Destroys every element of the array (spare ones too), last to first.
    ~Vector() { delete[] data; }

    /// Appends a copy of `item`, growing to 2, 4, 8, ... when full; returns
    /// the stored element.
    T& append(T const& item)
    {
        if (size == capacity) {
            grow();
        }
        data[size] = item;
        return data[size++];
    }

    /// Becomes an array of exactly `other.size` elements copied from the
    /// elements in use of `other` (no spare capacity; an array of zero
    /// elements when `other` is empty).
    void assign(Vector const& other)
    {
        std::unique_ptr<T[]> fresh(new T[other.size]);
        for (std::uint64_t i = 0; i < other.size; ++i) {
            fresh[i] = other.data[i];
        }
        T* old = data;
        size = other.size;
        capacity = other.size;
        data = fresh.release();
        delete[] old;
    }

    /// Detaches the array (null data, size and capacity 0), then destroys
    /// its elements from the last to the first and frees it.
    void clear() noexcept
    {
        T* old = data;
        data = nullptr;
        size = 0;
        capacity = 0;
        delete[] old;
    }

    T const* begin() const noexcept { return data; }
    T const* end() const noexcept { return data + size; }

private:
    void grow()
    {
        std::uint64_t const next = capacity == 0 ? 2 : capacity * 2;
        std::unique_ptr<T[]> fresh(new T[next]);
        for (std::uint64_t i = 0; i < size; ++i) {
            fresh[i] = data[i];
        }
        delete[] data;
        data = fresh.release();
        capacity = next;
    }
};

/// A map from `K` to `V` over exactly 256 buckets, chosen by the low 8 bits
/// of `K::hash()`. Keys are told apart by their 64-bit hash alone: two keys
/// with equal hashes are one key, and key texts are never compared. No
/// element count, no rehashing; nodes are only removed all at once by
/// `clear`. Requires of K: `hash()` giving 64 bits equal for equal keys;
/// of K and V: default construction, copying and assignment.
///
/// Iteration visits buckets in order and each bucket's nodes in insertion
/// order; any `set` or `clear` invalidates iterators and value pointers.
template <class K, class V>
class HashMap {
public:
    static constexpr std::size_t kBucketCount = 256;

    struct Node {
        std::uint64_t hash; // left unset by default construction; never read then
        K key;
        V value;
    };
    using Bucket = Vector<Node>;

    /// 256 empty buckets, each holding an array of zero nodes.
    HashMap()
    {
        Bucket const empty;
        for (Bucket& bucket : m_buckets) {
            bucket.assign(empty);
        }
    }
    /// Independent buckets holding copies of `other`'s nodes: keys and values
    /// are copied as handles, so shared lists stay shared.
    HashMap(HashMap const& other)
    {
        for (std::size_t i = 0; i < kBucketCount; ++i) {
            m_buckets[i].assign(other.m_buckets[i]);
        }
    }
    HashMap& operator=(HashMap const& other)
    {
        if (this != &other) {
            for (std::size_t i = 0; i < kBucketCount; ++i) {
                m_buckets[i].assign(other.m_buckets[i]);
            }
        }
        return *this;
    }
    /// Frees every bucket, from the last to the first.
    ~HashMap()
    {
        for (std::size_t i = kBucketCount; i-- > 0;) {
            m_buckets[i].clear();
        }
    }

    /// Number of nodes, summed over the buckets at every call.
    std::uint64_t size() const noexcept
    {
        std::uint64_t total = 0;
        for (Bucket const& bucket : m_buckets) {
            total += bucket.size;
        }
        return total;
    }

    /// The value stored under `key`'s hash, or null.
    V* find(K const& key) noexcept { return findHash(key.hash()); }
    V const* find(K const& key) const noexcept { return const_cast<HashMap*>(this)->findHash(key.hash()); }

    /// Stores `value` under `key` (replacing the value of a node with the
    /// same hash, whose key stays) and returns the stored value, valid until
    /// its bucket next grows, is assigned, cleared or destroyed.
    V& set(K const& key, V const& value)
    {
        std::uint64_t const hash = key.hash();
        if (V* existing = findHash(hash)) {
            *existing = value;
            return *existing;
        }
        Node node;
        node.hash = hash;
        node.key = key;
        node.value = value;
        return m_buckets[hash & 0xFFu].append(node).value;
    }

    /// Empties every bucket and frees its storage.
    void clear() noexcept
    {
        for (Bucket& bucket : m_buckets) {
            bucket.clear();
        }
    }

    /// Bucket `index` (< 256), for inspection.
    Bucket const& bucket(std::size_t index) const noexcept { return m_buckets[index]; }

    /// A forward iterator over the nodes in use.
    class const_iterator {
    public:
        Node const& operator*() const noexcept { return m_map->m_buckets[m_bucket].data[m_node]; }
        Node const* operator->() const noexcept { return &**this; }
        const_iterator& operator++() noexcept
        {
            ++m_node;
            settle();
            return *this;
        }
        bool operator==(const_iterator const& o) const noexcept { return m_bucket == o.m_bucket && m_node == o.m_node; }
        bool operator!=(const_iterator const& o) const noexcept { return !(*this == o); }

    private:
        friend class HashMap;
        const_iterator(HashMap const* map, std::size_t bucket) noexcept : m_map(map), m_bucket(bucket) { settle(); }
        void settle() noexcept
        {
            while (m_bucket < kBucketCount && m_node >= m_map->m_buckets[m_bucket].size) {
                ++m_bucket;
                m_node = 0;
            }
        }
        HashMap const* m_map;
        std::size_t m_bucket;
        std::uint64_t m_node = 0;
    };
    const_iterator begin() const noexcept { return const_iterator(this, 0); }
    const_iterator end() const noexcept { return const_iterator(this, kBucketCount); }

private:
    V* findHash(std::uint64_t hash) noexcept
    {
        Bucket& bucket = m_buckets[hash & 0xFFu];
        for (std::uint64_t i = 0; i < bucket.size; ++i) {
            if (bucket.data[i].hash == hash) {
                return &bucket.data[i].value;
            }
        }
        return nullptr;
    }

    Bucket m_buckets[kBucketCount];
};

} // namespace orv::ds
