#include <orv/string_vector.h>

#include <utility>
#include <vector>

namespace orv {

/// The shared list behind every copy of a StringVector.
class StringVector::Body final : public RefCounted {
public:
    Body() = default;
    explicit Body(std::vector<String> items) noexcept : m_items(std::move(items)) {}

    std::vector<String> m_items;

private:
    ~Body() override = default;
};

StringVector::StringVector() : RefersTo(new Body())
{}

StringVector::StringVector(std::initializer_list<String> items) : RefersTo(new Body(std::vector<String>(items)))
{}

StringVector::Body* StringVector::list() const noexcept
{
    return static_cast<Body*>(body());
}

void StringVector::push_back(String item)
{
    if (!list()) {
        // A moved-from list has no body; it gets a fresh one of its own.
        adopt(new Body());
    }
    list()->m_items.push_back(std::move(item));
}

bool StringVector::contains(String const& item, bool noCase) const noexcept
{
    for (String const& element : *this) {
        if (noCase ? element.compareNoCase(item) == 0 : element == item) {
            return true;
        }
    }
    return false;
}

StringVector StringVector::dup() const
{
    StringVector copy;
    if (Body const* const source = list()) {
        copy.list()->m_items = source->m_items;
    }
    return copy;
}

std::size_t StringVector::size() const noexcept
{
    Body const* const source = list();
    return source ? source->m_items.size() : 0;
}

void StringVector::clear() noexcept
{
    if (Body* const target = list()) {
        target->m_items.clear();
    }
}

String const* StringVector::begin() const noexcept
{
    Body const* const source = list();
    return source ? source->m_items.data() : nullptr;
}

String const* StringVector::end() const noexcept
{
    Body const* const source = list();
    return source ? source->m_items.data() + source->m_items.size() : nullptr;
}

} // namespace orv
