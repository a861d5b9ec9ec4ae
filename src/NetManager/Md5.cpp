#include "NetManager/Md5.h"

#include <cstring>

#include <openssl/evp.h>

void md5_encry_data(const char* text, unsigned char* out)
{
    constexpr char digits[] = "0123456789abcdef";
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned length = 0;
    if (text == nullptr || out == nullptr ||
        EVP_Digest(text, std::strlen(text), digest, &length, EVP_md5(), nullptr) != 1)
        return;
    for (unsigned i = 0; i < length; ++i) {
        *out++ = static_cast<unsigned char>(digits[digest[i] >> 4]);
        *out++ = static_cast<unsigned char>(digits[digest[i] & 15]);
    }
}
