// SPDX-License-Identifier: MIT
#include "Sha256.h"

#include <openssl/evp.h>

#include <utility>

namespace quorvane {

void Sha256::Release::operator()(evp_md_ctx_st* context) const
{
    EVP_MD_CTX_free(context);
}

void Sha256::Release::operator()(evp_md_st* algorithm) const
{
    EVP_MD_free(algorithm);
}

// The algorithm is looked up once: EVP_sha256() would have it looked up again at every start.
Sha256::Sha256()
    : m_algorithm(EVP_MD_fetch(nullptr, "SHA256", nullptr))
    , m_context(EVP_MD_CTX_new())
{}

void Sha256::start()
{
    m_isGood = m_algorithm && m_context &&
               EVP_DigestInit_ex2(m_context.get(), m_algorithm.get(), nullptr) == 1;
}

void Sha256::update(std::span<const std::byte> bytes)
{
    m_isGood = m_isGood && EVP_DigestUpdate(m_context.get(), bytes.data(), bytes.size()) == 1;
}

std::optional<Sha256::Digest> Sha256::finish()
{
    Digest digest;
    m_isGood = m_isGood && EVP_DigestFinal_ex(m_context.get(), digest.data(), nullptr) == 1;
    if (!m_isGood) {
        return std::nullopt;
    }
    m_isGood = false;
    return digest;
}

} // namespace quorvane
