#include <tinyxml2.h>

#include "page/compose.hpp"

namespace Bench {
namespace {

struct Sink {
    tinyxml2::XMLDocument& document;
    tinyxml2::XMLNode* node;

    void Open(char const* tag) { node = node->InsertEndChild(document.NewElement(tag)); }
    void Leaf(char const* tag) { Open(tag); }
    void Attribute(char const* name, char const* value) {
        node->ToElement()->SetAttribute(name, value);
    }
    void Attribute(char const* name, std::string const& value) { Attribute(name, value.c_str()); }
    void Text(std::string const& text) { node->InsertEndChild(document.NewText(text.c_str())); }
    void Close() { node = node->Parent(); }
    void CloseLeaf() { Close(); }
};

class Tinyxml2Page : public Contender {
public:
    void Build(PageData const& data) override {
        document_ = std::make_unique<tinyxml2::XMLDocument>();
        Sink sink = {*document_, document_.get()};
        Compose(sink, data);
    }

    std::string_view Write() override {
        printer_.ClearBuffer();
        document_->Print(&printer_);
        return {printer_.CStr(), static_cast<std::size_t>(printer_.CStrSize() - 1)};
    }

    void Destroy() override { document_.reset(); }

private:
    std::unique_ptr<tinyxml2::XMLDocument> document_;
    tinyxml2::XMLPrinter printer_{nullptr, true};
};

}  // namespace

std::unique_ptr<Contender> MakeTinyxml2() {
    return std::make_unique<Tinyxml2Page>();
}

}  // namespace Bench
