#include <libxml/xmlwriter.h>

#include "page/compose.hpp"
#include "page/libxml2_buffer.hpp"

namespace Bench {
namespace {

struct Sink {
    xmlTextWriterPtr writer;

    void Open(char const* tag) { xmlTextWriterStartElement(writer, Bytes(tag)); }
    void Leaf(char const* tag) { Open(tag); }
    void Attribute(char const* name, char const* value) {
        xmlTextWriterWriteAttribute(writer, Bytes(name), Bytes(value));
    }
    void Attribute(char const* name, std::string const& value) { Attribute(name, value.c_str()); }
    void Text(std::string const& text) { xmlTextWriterWriteString(writer, Bytes(text.c_str())); }
    void Close() { xmlTextWriterEndElement(writer); }
    void CloseLeaf() { Close(); }
};

class Libxml2WriterPage : public Contender {
public:
    void Build(PageData const& data) override { data_ = &data; }

    std::string_view Write() override {
        xmlBufferEmpty(buffer_.get());
        Sink sink = {xmlNewTextWriterMemory(buffer_.get(), 0)};
        Compose(sink, *data_);
        xmlFreeTextWriter(sink.writer);
        return TextOf(buffer_.get());
    }

    void Destroy() override {}

private:
    PageData const* data_ = nullptr;
    Libxml2Buffer buffer_ = MakeLibxml2Buffer();
};

}  // namespace

std::unique_ptr<Contender> MakeLibxml2Writer() {
    return std::make_unique<Libxml2WriterPage>();
}

}  // namespace Bench
