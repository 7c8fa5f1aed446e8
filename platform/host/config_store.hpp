// The statuses of the configuration store.
#ifndef QUILLO_HOST_CONFIG_STORE_HPP
#define QUILLO_HOST_CONFIG_STORE_HPP

namespace QuilloHost {

enum ConfigStatus : int {
    ConfigStatus_Done = 0,
    ConfigStatus_BadArgument = 1,  // no name, no value, or what breaks the rules
    ConfigStatus_UnknownName = 2,  // no such setting was declared
    ConfigStatus_NotBoolean = 3,   // the value is neither TRUE nor FALSE nor a whole number
    ConfigStatus_StoreFailed = 4   // the database could not be read or written
};

}  // namespace QuilloHost

#endif
