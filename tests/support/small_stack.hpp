// Work on a stack too small to recurse into a deep tree.
#ifndef QUILLO_TESTS_SUPPORT_SMALL_STACK_HPP
#define QUILLO_TESTS_SUPPORT_SMALL_STACK_HPP

#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>

// Runs `work` on a thread with a stack of 128 KiB.
inline void RunOnSmallStack(std::function<void()> work) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 128 * 1024), 0);
    pthread_t thread;
    auto const run = [](void* given) -> void* {
        (*static_cast<std::function<void()>*>(given))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    ASSERT_EQ(pthread_attr_destroy(&attributes), 0);
}

#endif
