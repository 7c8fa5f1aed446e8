// The stand-alone platform's set-up: what a server may settle before it serves pages.
//
//     QuilloHost::SetLogThreshold(QuilloHost::LogLevel::Warning);
//     QuilloHost::SetCatalogFolder("/usr/share/quillo/catalogs");
//     QuilloHost::DeclareSetting("status.interfaces", "TRUE");
//
// Everything has a default; a program that calls nothing of this gets a working platform, which
// knows no setting. Set-up is done once, by one thread, before the first request.
#ifndef QUILLO_HOST_HOST_HPP
#define QUILLO_HOST_HOST_HPP

#include <chrono>
#include <string>
#include <system_error>

#define QUILLO_HOST_API __attribute__((visibility("default")))

namespace QuilloHost {

// How much an entry of the device log matters, the least first.
enum class LogLevel : int { Info, Warning, Error };

// From now on the device log leaves out entries below `lowest`, but for those filed with
// `logSpecForceInfo`, which are always written. Until the first call nothing is left out. May be
// called at any time, on any thread.
QUILLO_HOST_API void SetLogThreshold(LogLevel lowest) noexcept;

// Where the configuration store keeps its database, `configuration.db`. The folder is made when it
// is first needed. Without this call it is the environment's QUILLO_STATE_DIR unless empty, else
// /var/lib/quillo for root, else $XDG_STATE_HOME/quillo or ~/.local/state/quillo.
QUILLO_HOST_API void SetStateFolder(std::string const& folder);

// Makes that folder where it is not there yet, for its owner alone, and those that it lies in. They
// last through a power cut. Returns what went wrong.
QUILLO_HOST_API std::error_code MakeStateFolder();

// How long running values hold: as long as this text stays the same. Without this call it is the
// boot of the machine.
QUILLO_HOST_API void SetServiceRun(std::string const& run);

// How long the store waits for another process's write, in milliseconds. Without this call 2000.
QUILLO_HOST_API void SetStorePatience(int milliseconds);

// Makes `name` a setting of the configuration store, with the value it has until one is stored. A
// name has 1 to 64 bytes, no '=', no control byte, and no blank at its ends; a value has at most
// 256 bytes and no control byte. Returns false, behind a log entry, when one of them breaks this.
QUILLO_HOST_API bool DeclareSetting(std::string const& name, std::string const& defaultValue);

// Where the translation service finds its catalogs: FOLDER/de-de/LC_MESSAGES/quillo.mo for German.
// Without this call it is the environment's QUILLO_CATALOG_DIR unless that is empty, else the
// folder that the build or the installation put them in. Catalogs are read anew.
QUILLO_HOST_API void SetCatalogFolder(std::string const& folder);

// Told the name of an object of the attribute service that was asked for, and how long the answer
// took to be made and written. The name is gone when the call returns.
typedef void (*QueryWatch)(char const* object, std::chrono::nanoseconds taken) noexcept;

// From now on `watch` is called behind each answer; null: nobody is told, as without this call.
QUILLO_HOST_API void SetQueryWatch(QueryWatch watch) noexcept;

}  // namespace QuilloHost

#endif
