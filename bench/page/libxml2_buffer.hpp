// A buffer that keeps its memory from page to page and doubles it when there is need.
#ifndef QUILLO_BENCH_PAGE_LIBXML2_BUFFER_HPP
#define QUILLO_BENCH_PAGE_LIBXML2_BUFFER_HPP

#include <libxml/tree.h>

#include <memory>
#include <string_view>

namespace Bench {

struct Libxml2BufferFree {
    void operator()(xmlBufferPtr buffer) const { xmlBufferFree(buffer); }
};
typedef std::unique_ptr<xmlBuffer, Libxml2BufferFree> Libxml2Buffer;

inline Libxml2Buffer MakeLibxml2Buffer() {
    Libxml2Buffer buffer(xmlBufferCreate());
    xmlBufferSetAllocationScheme(buffer.get(), XML_BUFFER_ALLOC_DOUBLEIT);
    return buffer;
}

inline std::string_view TextOf(xmlBufferPtr buffer) {
    return {reinterpret_cast<char const*>(xmlBufferContent(buffer)),
            static_cast<std::size_t>(xmlBufferLength(buffer))};
}

inline xmlChar const* Bytes(char const* text) {
    return reinterpret_cast<xmlChar const*>(text);
}

}  // namespace Bench

#endif
