#include "page/quillo_tree.hpp"

namespace Bench {
namespace {

class QuilloPage : public Contender {
public:
    void Build(PageData const& data) override { page_ = MakeTree(data); }

    std::string_view Write() override {
        text_.clear();
        AppendTree(page_, text_);
        return text_;
    }

    void Destroy() override { page_ = Quillo::Element(); }

private:
    Quillo::Element page_;
    std::string text_;
};

}  // namespace

std::unique_ptr<Contender> MakeQuillo() {
    return std::make_unique<QuilloPage>();
}

}  // namespace Bench
