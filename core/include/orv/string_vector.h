#pragma once
// orv::StringVector: a shared, ordered list of Strings.

#include <orv/string.h>

#include <cstddef>
#include <initializer_list>

namespace orv {

/// A list handle. Copies share one list: `push_back` and `clear` through any
/// copy change what every copy sees. `dup` is the only way to an independent
/// list. A default-constructed list already has its (empty) body, so copies
/// made before the first `push_back` share it too. Allocation failures throw
/// `std::bad_alloc`; nothing else throws.
class StringVector : public RefersTo<IRefCounted> {
public:
    /// An empty list with its own body.
    StringVector();
    /// The given Strings, in order.
    StringVector(std::initializer_list<String> items);

    /// Appends `item` at the end of the shared list.
    void push_back(String item);
    /// True when an element equals `item`: without regard to ASCII letter
    /// case when `noCase` is true, exactly otherwise.
    bool contains(String const& item, bool noCase) const noexcept;
    /// A new, independent list holding the same Strings in the same order.
    StringVector dup() const;
    /// True when the list has no element.
    bool empty() const noexcept { return size() == 0; }
    /// Number of elements.
    std::size_t size() const noexcept;
    /// Removes every element from the shared list.
    void clear() noexcept;

    /// The elements lie side by side; pointers stay valid until the list is
    /// next changed through any handle. An empty list may give null for both.
    String const* begin() const noexcept;
    String const* end() const noexcept;
    /// Element `index`; `index` must be less than `size()`.
    String const& operator[](std::size_t index) const noexcept { return begin()[index]; }

private:
    class Body;
    Body* list() const noexcept;
};

} // namespace orv
