// Pages written to where nothing is taken: a full disk, and a pipe that nobody reads.
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <streambuf>

#include "support/page_test.hpp"

using namespace Quillo;

namespace {

// Writes each byte to a descriptor, and fails with it.
class DescriptorBuffer : public std::streambuf {
public:
    explicit DescriptorBuffer(int descriptor) : fd(descriptor) {}

protected:
    int_type overflow(int_type byte) override {
        char const text = traits_type::to_char_type(byte);
        return write(fd, &text, 1) == 1 ? byte : traits_type::eof();
    }

private:
    int const fd;
};

class ClosedStreamsTest : public PageTest {
protected:
    ClosedStreamsTest() {
        Element form = Tag("form");
        form.SetAttr("name", "f");
        form << Span().SetOneLine().SetFocus().SetAttr("name", "e");
        page << form << Text(std::string(100000, '<'), true);
        html = Html(page);
    }

    // Writes the page to `path`; then it is whole when it is written elsewhere, and so is the next.
    void ExpectFailure(std::string const& path) {
        for (bool const throws : {false, true}) {
            std::ofstream out(path);
            ASSERT_TRUE(out.is_open()) << path;
            out.exceptions(throws ? std::ios::badbit : std::ios::goodbit);
            Renderer r(out);
            bool hasThrown = false;
            try {
                page.impl->Render(r, 0);
            } catch (std::ios_base::failure const&) {
                hasThrown = true;
            }
            EXPECT_EQ(hasThrown, throws);
            EXPECT_TRUE(out.bad());
            EXPECT_EQ(Html(page), html);
            EXPECT_EQ(Html(Div() << Br()), "<div>\n<br >\n</div>\n");
            out.exceptions(std::ios::goodbit);
        }
        EXPECT_TRUE(Platform().log.empty());
    }

    Div const page;
    std::string html;
};

TEST_F(ClosedStreamsTest, APageForAFullDiskEndsAndTheNextOneIsWhole) {
    ExpectFailure("/dev/full");
}

TEST_F(ClosedStreamsTest, APageForAPipeThatNobodyReadsEndsAndTheNextOneIsWhole) {
    auto* const before = std::signal(SIGPIPE, SIG_IGN);
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    close(ends[0]);
    DescriptorBuffer buffer(ends[1]);
    std::ostream out(&buffer);
    Renderer r(out);
    page.impl->Render(r, 0);
    EXPECT_TRUE(out.bad());
    close(ends[1]);
    std::signal(SIGPIPE, before);
    EXPECT_EQ(Html(page), html);
}

}  // namespace
