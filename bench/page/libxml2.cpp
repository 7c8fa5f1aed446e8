#include "page/compose.hpp"
#include "page/libxml2_buffer.hpp"

namespace Bench {
namespace {

struct Sink {
    xmlNodePtr node;

    void Open(char const* tag) { node = xmlNewChild(node, nullptr, Bytes(tag), nullptr); }
    void Leaf(char const* tag) { Open(tag); }
    void Attribute(char const* name, char const* value) {
        xmlNewProp(node, Bytes(name), Bytes(value));
    }
    void Attribute(char const* name, std::string const& value) { Attribute(name, value.c_str()); }
    void Text(std::string const& text) {
        xmlAddChild(node, xmlNewTextLen(Bytes(text.data()), static_cast<int>(text.size())));
    }
    void Close() { node = node->parent; }
    void CloseLeaf() { Close(); }
};

class Libxml2Page : public Contender {
public:
    ~Libxml2Page() override { Destroy(); }

    void Build(PageData const& data) override {
        document_ = xmlNewDoc(Bytes("1.0"));
        Sink sink = {reinterpret_cast<xmlNodePtr>(document_)};
        Compose(sink, data);
    }

    std::string_view Write() override {
        xmlBufferEmpty(buffer_.get());
        xmlNodeDump(buffer_.get(), document_, xmlDocGetRootElement(document_), 0, 0);
        return TextOf(buffer_.get());
    }

    void Destroy() override {
        if (document_ != nullptr) {
            xmlFreeDoc(document_);
            document_ = nullptr;
        }
    }

private:
    xmlDocPtr document_ = nullptr;
    Libxml2Buffer buffer_ = MakeLibxml2Buffer();
};

}  // namespace

std::unique_ptr<Contender> MakeLibxml2() {
    return std::make_unique<Libxml2Page>();
}

}  // namespace Bench
