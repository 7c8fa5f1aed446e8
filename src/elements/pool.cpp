#include "elements/pool.hpp"

#include <new>
#include <utility>

namespace Quillo::Pool {
namespace {

// The most that a thread's pool holds, in bytes, without what the allocator adds to each block.
constexpr std::size_t limit = std::size_t(512) * 1024;

// Sizes of blocks are multiples of a step, up to the largest element of the library's own. So is
// the size of any class with virtual operations: no block is larger than what it was asked for, and
// one that page code took from ::operator new serves as well.
constexpr std::size_t step = sizeof(void*);
constexpr std::size_t sizes = (sizeof(TextImpl) + step - 1) / step;

typedef Attributes::node_type Node;

// What a node of a map takes beside its value: three links and a colour.
constexpr std::size_t nodeSize = sizeof(Attributes::value_type) + 4 * sizeof(void*);

// An element with a second child often has some more.
constexpr std::size_t secondCapacity = 6;

// What is larger is not kept: a node with the room of its texts, and a list of children.
constexpr std::size_t largestNode = sizeof(Node) + nodeSize + 128;
constexpr std::size_t largestList = sizeof(Children) + 12 * sizeof(Children::value_type);

std::size_t IndexOf(std::size_t size) {
    return (size - 1) / step;
}

std::size_t SizeAt(std::size_t index) {
    return (index + 1) * step;
}

class ThreadPool {
public:
    ThreadPool() : held(0), blocks() {}
    ThreadPool(ThreadPool const&) = delete;
    ThreadPool& operator=(ThreadPool const&) = delete;
    ~ThreadPool() {
        for (std::size_t i = 0; i < sizes; ++i) {
            while (void* const block = TakeBlock(i)) {
                ::operator delete(block);
            }
        }
    }

    // A block of the size at `index`; null: there is none.
    void* TakeBlock(std::size_t index) {
        FreeBlock* const block = blocks[index];
        if (block != nullptr) {
            blocks[index] = block->next;
            held -= SizeAt(index);
        }
        return block;
    }

    // False: the pool is full.
    bool KeepBlock(void* block, std::size_t index) {
        if (!HasRoomFor(SizeAt(index))) {
            return false;
        }
        blocks[index] = new (block) FreeBlock{blocks[index]};
        held += SizeAt(index);
        return true;
    }

    // An attribute's node, with old texts in it; empty: there is none.
    Node TakeNode() {
        Node node;
        if (!nodes.empty()) {
            node = std::move(nodes.back());
            nodes.pop_back();
            held -= SizeOf(node);
        }
        return node;
    }

    void Keep(Attributes& attributes) {
        while (!attributes.empty()) {
            Node node = attributes.extract(attributes.begin());
            std::size_t const size = SizeOf(node);
            if (size > largestNode || !HasRoomFor(size)) {
                return;
            }
            nodes.push_back(std::move(node));
            held += size;
        }
    }

    void TakeList(Children& children) {
        if (!lists.empty()) {
            children.swap(lists.back());
            lists.pop_back();
            held -= SizeOf(children);
        }
    }

    void Keep(Children& children) {
        std::size_t const size = SizeOf(children);
        if (children.capacity() != 0 && size <= largestList && HasRoomFor(size)) {
            lists.push_back(std::move(children));
            held += size;
        }
    }

private:
    struct FreeBlock {
        FreeBlock* next;
    };

    static std::size_t SizeOf(Node const& node) {
        return sizeof(Node) + nodeSize + node.key().capacity() + node.mapped().capacity();
    }

    static std::size_t SizeOf(Children const& children) {
        return sizeof(Children) + children.capacity() * sizeof(Children::value_type);
    }

    bool HasRoomFor(std::size_t size) const { return size <= limit - held; }

    std::size_t held;
    FreeBlock* blocks[sizes];
    std::vector<Node> nodes;
    std::vector<Children> lists;
};

// The pool of this thread, and whether it was closed. Words at a place that is fixed when the
// library is loaded: to find them takes no call.
__attribute__((tls_model("initial-exec"))) thread_local ThreadPool* own = nullptr;
__attribute__((tls_model("initial-exec"))) thread_local bool isClosed = false;

// Closes the pool at the end of the thread. What outlives it, as `debugMsgs` does at the end of the
// process, does without.
struct Closing {
    ~Closing() {
        delete std::exchange(own, nullptr);
        isClosed = true;
    }
};

ThreadPool* Open() {
    if (!isClosed) {
        own = new (std::nothrow) ThreadPool;
        if (own != nullptr) {
            thread_local Closing closing;
        }
    }
    return own;
}

// Null: there is none.
ThreadPool* Own() {
    return own != nullptr ? own : Open();
}

// For what belongs to an element and is no part of it: its reference counts.
template <class T>
struct Allocator {
    typedef T value_type;

    Allocator() = default;
    template <class U>
    Allocator(Allocator<U> const&) {}

    T* allocate(std::size_t count) { return static_cast<T*>(Take(count * sizeof(T))); }
    void deallocate(T* block, std::size_t count) { Give(block, count * sizeof(T)); }

    bool operator==(Allocator const&) const { return true; }
    bool operator!=(Allocator const&) const { return false; }
};

// Keeps what is left of an element, unless the pool is full or memory is short.
template <class Remains>
void Keep(Remains& remains) noexcept {
    ThreadPool* const pool = Own();
    if (pool != nullptr) {
        try {
            pool->Keep(remains);
        } catch (std::bad_alloc const&) {
            // It goes the way of all memory, with its element.
        }
    }
}

}  // namespace

void* Take(std::size_t size) {
    std::size_t const index = IndexOf(size);
    if (index >= sizes) {
        return ::operator new(size);
    }
    ThreadPool* const pool = Own();
    void* const block = pool != nullptr ? pool->TakeBlock(index) : nullptr;
    return block != nullptr ? block : ::operator new(SizeAt(index));
}

void Give(void* block, std::size_t size) noexcept {
    std::size_t const index = IndexOf(size);
    ThreadPool* const pool = index < sizes ? Own() : nullptr;
    if (pool == nullptr || !pool->KeepBlock(block, index)) {
        ::operator delete(block);
    }
}

boost::shared_ptr<ElementImpl> Share(ElementImpl* element) {
    return boost::shared_ptr<ElementImpl>(element, boost::checked_deleter<ElementImpl>(),
                                          Allocator<ElementImpl>());
}

void Set(Attributes& attributes, std::string const& name, std::string const& value) {
    Attributes::iterator const place = attributes.lower_bound(name);
    if (place != attributes.end() && place->first == name) {
        std::string copy(value);
        place->second.swap(copy);
        return;
    }
    ThreadPool* const pool = Own();
    Node node = pool != nullptr ? pool->TakeNode() : Node();
    if (node.empty()) {
        attributes.emplace_hint(place, name, value);
    } else {
        node.key() = name;
        node.mapped() = value;
        attributes.insert(place, std::move(node));
    }
}

void Grow(Children& children) {
    ThreadPool* const pool = children.capacity() == 0 ? Own() : nullptr;
    if (pool != nullptr) {
        pool->TakeList(children);
    } else if (children.size() == 1) {
        children.reserve(secondCapacity);
    }
}

void Give(Attributes& attributes) noexcept {
    Keep(attributes);
}

void Give(Children& children) noexcept {
    Keep(children);
}

}  // namespace Quillo::Pool
