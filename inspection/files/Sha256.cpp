#include "inspection/files/Sha256.h"

#include "bundle_reader/file/FileBytes.h"

#include <array>
#include <cstdint>
#include <memory>
#include <new>
#include <openssl/evp.h>
#include <system_error>
#include <vector>

namespace ostrel::inspection {
namespace {

constexpr std::size_t piece = std::size_t{1} << 18;

class Digest {
public:
    Digest()
    {
        if (!m_context || EVP_DigestInit_ex(m_context.get(), EVP_sha256(), nullptr) != 1) {
            throw std::bad_alloc{};
        }
    }

    void add(const char* bytes, std::size_t size)
    {
        if (EVP_DigestUpdate(m_context.get(), bytes, size) != 1) {
            throw std::bad_alloc{};
        }
    }

    std::string take()
    {
        std::array<unsigned char, EVP_MAX_MD_SIZE> bytes{};
        unsigned int size = 0;
        if (EVP_DigestFinal_ex(m_context.get(), bytes.data(), &size) != 1) {
            throw std::bad_alloc{};
        }
        constexpr const char* digits = "0123456789abcdef";
        std::string text;
        for (unsigned int i = 0; i < size; ++i) {
            text += digits[bytes.at(i) >> 4U];
            text += digits[bytes.at(i) & 0xFU];
        }
        return text;
    }

private:
    struct Free {
        void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
    };

    std::unique_ptr<EVP_MD_CTX, Free> m_context{EVP_MD_CTX_new()};
};

} // namespace

std::string sha256Of(const std::string& path)
{
    try {
        const bundle_reader::FileBytes file{path};
        Digest digest;
        std::vector<char> bytes(piece);
        for (std::uint64_t offset = 0;;) {
            const std::size_t size = file.read(offset, bytes.data(), bytes.size());
            digest.add(bytes.data(), size);
            offset += size;
            if (size < bytes.size()) {
                return digest.take();
            }
        }
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::not_enough_memory) {
            throw std::bad_alloc{};
        }
        return {};
    }
}

} // namespace ostrel::inspection
