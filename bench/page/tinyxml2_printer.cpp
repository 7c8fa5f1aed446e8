#include <tinyxml2.h>

#include "page/compose.hpp"

namespace Bench {
namespace {

struct Sink {
    tinyxml2::XMLPrinter& printer;

    void Open(char const* tag) { printer.OpenElement(tag, true); }
    void Leaf(char const* tag) { Open(tag); }
    void Attribute(char const* name, char const* value) { printer.PushAttribute(name, value); }
    void Attribute(char const* name, std::string const& value) { Attribute(name, value.c_str()); }
    void Text(std::string const& text) { printer.PushText(text.c_str()); }
    void Close() { printer.CloseElement(true); }
    void CloseLeaf() { Close(); }
};

class Tinyxml2PrinterPage : public Contender {
public:
    void Build(PageData const& data) override { data_ = &data; }

    std::string_view Write() override {
        printer_.ClearBuffer();
        Sink sink = {printer_};
        Compose(sink, *data_);
        return {printer_.CStr(), static_cast<std::size_t>(printer_.CStrSize() - 1)};
    }

    void Destroy() override {}

private:
    PageData const* data_ = nullptr;
    tinyxml2::XMLPrinter printer_{nullptr, true};
};

}  // namespace

std::unique_ptr<Contender> MakeTinyxml2Printer() {
    return std::make_unique<Tinyxml2PrinterPage>();
}

}  // namespace Bench
