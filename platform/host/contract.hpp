// The contract headers, as the platform itself includes them: with default visibility, so that the
// definitions of what they declare are exported from a library compiled with hidden visibility.
#ifndef QUILLO_HOST_CONTRACT_HPP
#define QUILLO_HOST_CONTRACT_HPP

#include <exception>
#include <string>
#include <vector>

#pragma GCC visibility push(default)
#include <attribute_service.h>
#include <config_store.h>
#include <device_log.h>
#include <glb.h>
#include <translation_service.h>
#include <zov_appdata.h>
#pragma GCC visibility pop

#endif
