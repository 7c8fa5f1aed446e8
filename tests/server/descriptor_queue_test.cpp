#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <descriptor_queue.hpp>
#include <thread>

namespace {

using QuilloServer::Descriptor;
using QuilloServer::DescriptorQueue;

// Which file it is that a descriptor refers to.
ino_t FileOf(int descriptor) {
    struct stat status = {};
    EXPECT_EQ(fstat(descriptor, &status), 0);
    return status.st_ino;
}

struct Pipe {
    Pipe() {
        int ends[2] = {-1, -1};
        EXPECT_EQ(pipe(ends), 0);
        readEnd = Descriptor(ends[0]);
        writeEnd = Descriptor(ends[1]);
    }

    Descriptor readEnd;
    Descriptor writeEnd;
};

// Puts in as many as there is room for.
int Fill(DescriptorQueue const& queue, int descriptor) {
    int count = 0;
    while (queue.Put(descriptor, 0)) {
        ++count;
    }
    return count;
}

TEST(DescriptorQueue, GivesWhatWasPutInFirst) {
    DescriptorQueue const queue;
    Pipe const first;
    Pipe const second;
    EXPECT_EQ(queue.Take(), -1);
    EXPECT_TRUE(queue.Put(first.readEnd.Get(), 0));
    EXPECT_TRUE(queue.Put(second.readEnd.Get(), 0));
    EXPECT_EQ(FileOf(Descriptor(queue.Take()).Get()), FileOf(first.readEnd.Get()));
    EXPECT_EQ(FileOf(Descriptor(queue.Take()).Get()), FileOf(second.readEnd.Get()));
    EXPECT_EQ(queue.Take(), -1);
}

TEST(DescriptorQueue, TakesNoMoreWhenItIsFull) {
    DescriptorQueue const queue;
    Pipe const pipe;
    int const count = Fill(queue, pipe.readEnd.Get());
    EXPECT_GE(count, 100);
    EXPECT_FALSE(queue.Put(pipe.readEnd.Get(), 1));
    for (int i = 0; i < count; ++i) {
        EXPECT_GE(Descriptor(queue.Take()).Get(), 0);
    }
    EXPECT_EQ(queue.Take(), -1);
}

TEST(DescriptorQueue, WaitsForRoom) {
    DescriptorQueue const queue;
    Pipe const pipe;
    int const count = Fill(queue, pipe.readEnd.Get());
    std::thread taker([&] {
        for (int i = 0; i < count; ++i) {
            EXPECT_GE(Descriptor(queue.Take()).Get(), 0);
        }
    });
    EXPECT_TRUE(queue.Put(pipe.readEnd.Get(), 3600000));
    taker.join();
}

}  // namespace
