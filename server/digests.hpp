// Digests and keyed digests (SHA-256), and random bytes.
#ifndef QUILLO_SERVER_DIGESTS_HPP
#define QUILLO_SERVER_DIGESTS_HPP

#include <cstddef>
#include <string>
#include <string_view>

namespace QuilloServer {

// The digest of `text` in base64, as a Content-Security-Policy has it: 44 bytes.
std::string Sha256Base64(std::string_view text);

// The digest of `text` under `key` (HMAC, RFC 2104) in hexadecimal: 64 bytes.
std::string KeyedDigest(std::string_view key, std::string_view text);

// As many random bytes as asked for, of the system's. Throws std::system_error when there are none.
std::string RandomBytes(std::size_t count);

std::string Hexadecimal(std::string_view bytes);

// Whether both are the same; takes as long whether the first byte differs or the last.
bool IsSameSecret(std::string_view left, std::string_view right);

}  // namespace QuilloServer

#endif
