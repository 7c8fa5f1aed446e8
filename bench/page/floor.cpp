// The floor: nobody writes a page faster than its bytes are put into a string.
#include "page/contender.hpp"

namespace Bench {
namespace {

class FinishedPage : public Contender {
public:
    void Build(PageData const& data) override {
        if (data_ != &data) {
            data_ = &data;
            std::unique_ptr<Contender> const maker = MakeQuillo();
            maker->Build(data);
            page_ = maker->Write();
        }
    }

    void Destroy() override {}

protected:
    std::string page_;
    std::string text_;

private:
    PageData const* data_ = nullptr;
};

// Line by line.
class AppendPage : public FinishedPage {
public:
    std::string_view Write() override {
        text_.clear();
        for (std::size_t begin = 0; begin < page_.size();) {
            std::size_t const end = page_.find('\n', begin) + 1;
            text_.append(page_, begin, end - begin);
            begin = end;
        }
        return text_;
    }
};

// At once, into memory of its own.
class CopyPage : public FinishedPage {
public:
    std::string_view Write() override {
        text_ = std::string(page_);
        return text_;
    }
};

}  // namespace

std::unique_ptr<Contender> MakeAppend() {
    return std::make_unique<AppendPage>();
}

std::unique_ptr<Contender> MakeCopy() {
    return std::make_unique<CopyPage>();
}

}  // namespace Bench
