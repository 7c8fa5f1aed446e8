#include <pugixml.hpp>

#include "page/compose.hpp"

namespace Bench {
namespace {

struct Sink {
    pugi::xml_node node;

    void Open(char const* tag) { node = node.append_child(tag); }
    void Leaf(char const* tag) { Open(tag); }
    void Attribute(char const* name, char const* value) {
        node.append_attribute(name).set_value(value);
    }
    void Attribute(char const* name, std::string const& value) { Attribute(name, value.c_str()); }
    void Text(std::string const& text) {
        node.append_child(pugi::node_pcdata).set_value(text.c_str());
    }
    void Close() { node = node.parent(); }
    void CloseLeaf() { Close(); }
};

struct Writer : pugi::xml_writer {
    explicit Writer(std::string& text) : out(text) {}
    void write(void const* data, std::size_t size) override {
        out.append(static_cast<char const*>(data), size);
    }
    std::string& out;
};

class PugixmlPage : public Contender {
public:
    void Build(PageData const& data) override {
        document_ = std::make_unique<pugi::xml_document>();
        Sink sink = {*document_};
        Compose(sink, data);
    }

    std::string_view Write() override {
        text_.clear();
        Writer writer(text_);
        document_->first_child().print(writer, "", pugi::format_raw);
        return text_;
    }

    void Destroy() override { document_.reset(); }

private:
    std::unique_ptr<pugi::xml_document> document_;
    std::string text_;
};

}  // namespace

std::unique_ptr<Contender> MakePugixml() {
    return std::make_unique<PugixmlPage>();
}

}  // namespace Bench
