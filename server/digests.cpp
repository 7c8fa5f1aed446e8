#include "digests.hpp"

#include <nettle/base64.h>
#include <nettle/hmac.h>
#include <nettle/memops.h>
#include <nettle/sha2.h>
#include <sys/random.h>

#include <cerrno>
#include <cstdint>
#include <system_error>

namespace QuilloServer {
namespace {

std::uint8_t const* Bytes(std::string_view text) {
    return reinterpret_cast<std::uint8_t const*>(text.data());
}

}  // namespace

std::string Sha256Base64(std::string_view text) {
    sha256_ctx state;
    sha256_init(&state);
    sha256_update(&state, text.size(), Bytes(text));
    std::uint8_t digest[SHA256_DIGEST_SIZE];
    sha256_digest(&state, sizeof digest, digest);
    std::string base64(BASE64_ENCODE_RAW_LENGTH(sizeof digest), '\0');
    base64_encode_raw(base64.data(), sizeof digest, digest);
    return base64;
}

std::string KeyedDigest(std::string_view key, std::string_view text) {
    hmac_sha256_ctx state;
    hmac_sha256_set_key(&state, key.size(), Bytes(key));
    hmac_sha256_update(&state, text.size(), Bytes(text));
    std::string digest(SHA256_DIGEST_SIZE, '\0');
    hmac_sha256_digest(&state, digest.size(), reinterpret_cast<std::uint8_t*>(digest.data()));
    return Hexadecimal(digest);
}

std::string RandomBytes(std::size_t count) {
    std::string bytes(count, '\0');
    // Up to 256 bytes come whole or not at all.
    if (getrandom(bytes.data(), count, 0) != static_cast<ssize_t>(count)) {
        throw std::system_error(errno, std::generic_category(), "no random bytes can be had");
    }
    return bytes;
}

std::string Hexadecimal(std::string_view bytes) {
    static char const digits[] = "0123456789abcdef";
    std::string text;
    for (char const byte : bytes) {
        auto const number = static_cast<unsigned char>(byte);
        text += digits[number >> 4U];
        text += digits[number & 15U];
    }
    return text;
}

bool IsSameSecret(std::string_view left, std::string_view right) {
    return left.size() == right.size() && memeql_sec(left.data(), right.data(), left.size()) != 0;
}

}  // namespace QuilloServer
