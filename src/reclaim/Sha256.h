// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>

// The library's own names, so that its headers stay out of ours.
struct evp_md_ctx_st;
struct evp_md_st;

namespace quorvane {

/// SHA-256 of bytes that come in pieces. One object serves any number of digests, one after the
/// other. One thread at a time.
class Sha256
{
public:
    using Digest = std::array<unsigned char, 32>;

    Sha256();
    Sha256(const Sha256&) = delete;
    Sha256& operator=(const Sha256&) = delete;
    ~Sha256() = default;

    /// Begins a new digest and forgets what came before.
    void start();
    void update(std::span<const std::byte> bytes);
    /// Ends the digest. Absent when the library refused any of its steps.
    std::optional<Digest> finish();

private:
    struct Release
    {
        void operator()(evp_md_ctx_st* context) const;
        void operator()(evp_md_st* algorithm) const;
    };

    std::unique_ptr<evp_md_st, Release> m_algorithm;
    std::unique_ptr<evp_md_ctx_st, Release> m_context;
    bool m_isGood = false;
};

} // namespace quorvane
