// In the place of pool.cpp, where there is to be no pool.
#include "elements/pool.hpp"

namespace Quillo::Pool {

void* Take(std::size_t size) {
    return ::operator new(size);
}

void Give(void* block, std::size_t) noexcept {
    ::operator delete(block);
}

boost::shared_ptr<ElementImpl> Share(ElementImpl* element) {
    return boost::shared_ptr<ElementImpl>(element);
}

void Set(Attributes& attributes, std::string const& name, std::string const& value) {
    std::string copy(value);
    attributes[name].swap(copy);
}

void Grow(Children&) {}
void Give(Attributes&) noexcept {}
void Give(Children&) noexcept {}

}  // namespace Quillo::Pool
