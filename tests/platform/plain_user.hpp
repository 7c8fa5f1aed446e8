// Takes the privileges of root that lift the system's limits from the calling thread, for the time
// of this object. Does nothing to an ordinary user.
#ifndef QUILLO_TESTS_PLAIN_USER_HPP
#define QUILLO_TESTS_PLAIN_USER_HPP

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

class PlainUser {
public:
    PlainUser() {
        syscall(SYS_capget, &header_, before_);
        __user_cap_data_struct none[2] = {before_[0], before_[1]};
        none[0].effective = 0;
        none[1].effective = 0;
        syscall(SYS_capset, &header_, none);
    }
    PlainUser(PlainUser const&) = delete;
    PlainUser& operator=(PlainUser const&) = delete;
    ~PlainUser() { syscall(SYS_capset, &header_, before_); }

private:
    __user_cap_header_struct header_ = {_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct before_[2] = {};
};

#endif
