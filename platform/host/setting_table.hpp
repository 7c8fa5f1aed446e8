// The stored and the running values of the settings, as they are kept on disk.
#ifndef QUILLO_HOST_SETTING_TABLE_HPP
#define QUILLO_HOST_SETTING_TABLE_HPP

#include <optional>
#include <string>
#include <string_view>

namespace QuilloHost {

// Each of these opens the table and closes it again. What goes wrong is thrown as a std::exception
// that says what, where and what to do; then nothing has been changed.

// The running value, else the stored one; nothing when there is neither, or no table yet. Needs no
// right to write, and makes no folder and no database.
std::optional<std::string> FindValue(std::string_view name);

void WriteRunning(std::string_view name, std::string_view value);
void WriteStoredAndRunning(std::string_view name, std::string_view value);

}  // namespace QuilloHost

#endif
