// Memory that elements gave back, kept for the next ones: a page is made of thousands of small
// blocks, and the next page of as many of the same sizes.
//
// Each thread has a pool of its own, which holds about half a megabyte at most, and gives it back
// when the thread ends. The small library has none: what an element takes there comes from operator
// new and goes back at once. Nor has the library under the address sanitizer, which is to see each
// block end.
#ifndef QUILLO_ELEMENTS_POOL_HPP
#define QUILLO_ELEMENTS_POOL_HPP

#include <cstddef>
#include <quillo>

namespace Quillo::Pool {

typedef std::map<std::string, std::string> Attributes;
typedef std::vector<boost::shared_ptr<ElementImpl>> Children;

// A block of `size` bytes, aligned as those of operator new are, and the way back.
void* Take(std::size_t size);
void Give(void* block, std::size_t size) noexcept;

// The first pointer to a new element, which it owns; deletes the element when memory runs out.
boost::shared_ptr<ElementImpl> Share(ElementImpl* element);

// Sets an attribute; all or nothing when memory runs out. The texts may be pieces of attributes.
void Set(Attributes& attributes, std::string const& name, std::string const& value);

// Makes room for more children when a list is full, or leaves that to the list.
void Grow(Children& children);

// May take what a dying element leaves.
void Give(Attributes& attributes) noexcept;
void Give(Children& children) noexcept;

}  // namespace Quillo::Pool

#endif
