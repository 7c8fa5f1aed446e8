// Pages written to where nothing is taken: a full disk, and a pipe that nobody reads.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <fstream>
#include <sstream>
#include <streambuf>

#include "support/page_test.hpp"

using namespace Quillo;

namespace {

// Writes each byte to a descriptor, and fails with it.
class DescriptorBuffer : public std::streambuf {
public:
    explicit DescriptorBuffer(int descriptor) : fd(descriptor) {}

    int error = 0;  // why the last byte that failed did

protected:
    int_type overflow(int_type byte) override {
        char const text = traits_type::to_char_type(byte);
        if (write(fd, &text, 1) == 1) {
            return byte;
        }
        error = errno;
        return traits_type::eof();
    }

private:
    int const fd;
};

// A pipe whose read end is closed, and which raises no signal.
class UnreadPipe {
public:
    UnreadPipe() : before(std::signal(SIGPIPE, SIG_IGN)) {
        int ends[2];
        EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
        close(ends[0]);
        writeEnd = ends[1];
    }
    UnreadPipe(UnreadPipe const&) = delete;
    UnreadPipe& operator=(UnreadPipe const&) = delete;
    ~UnreadPipe() {
        close(writeEnd);
        std::signal(SIGPIPE, before);
    }

    int writeEnd = -1;

private:
    sighandler_t const before;
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

    std::string HtmlOnAStreamThat(bool throws) const {
        std::ostringstream out;
        out.exceptions(throws ? std::ios::badbit : std::ios::goodbit);
        Renderer r(out);
        page.impl->Render(r, 0);
        return out.str();
    }

    // Writes the page to `out`, which takes nothing; then it is whole when it is written elsewhere,
    // and so is the next.
    void ExpectFailure(std::ostream& out, bool throws) const {
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
        EXPECT_EQ(HtmlOnAStreamThat(throws), html);
        EXPECT_EQ(Html(Div() << Br()), "<div>\n<br >\n</div>\n");
        EXPECT_TRUE(Platform().log.empty());
        out.exceptions(std::ios::goodbit);
    }

    Div const page;
    std::string html;
};

TEST_F(ClosedStreamsTest, APageForAFullDiskEndsAndTheNextOneIsWhole) {
    for (bool const throws : {false, true}) {
        std::ofstream out("/dev/full");
        ASSERT_TRUE(out.is_open());
        ExpectFailure(out, throws);
    }
}

TEST_F(ClosedStreamsTest, APageForAPipeThatNobodyReadsEndsAndTheNextOneIsWhole) {
    for (bool const throws : {false, true}) {
        UnreadPipe const pipe;
        DescriptorBuffer buffer(pipe.writeEnd);
        std::ostream out(&buffer);
        ExpectFailure(out, throws);
        EXPECT_EQ(buffer.error, EPIPE);
    }
}

}  // namespace
