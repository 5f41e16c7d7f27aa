// SPDX-License-Identifier: MIT
#include "FolderChain.h"

namespace quorvane {

void FolderChain::start(std::string_view rootPath)
{
    m_path.assign(rootPath);
    m_rootLength = rootPath.size();
    m_chain.assign(1, Step{0, rootPath.size()});
    m_folders.clear();
}

std::optional<std::size_t> FolderChain::find(std::string_view path)
{
    while (m_chain.size() > 1 && m_chain.back().pathLength > path.size()) {
        m_chain.pop_back();
    }
    m_path.resize(m_chain.back().pathLength);
    return m_path == path ? m_chain.back().folder : findFromRoot(path);
}

std::optional<std::size_t> FolderChain::findFromRoot(std::string_view path)
{
    m_chain.resize(1);
    m_path.resize(m_rootLength);
    const bool isSlashNeeded = !m_path.empty() && !m_path.ends_with('/');
    const bool isBelow = path.size() > m_rootLength && path.starts_with(m_path) &&
                         (!isSlashNeeded || path[m_rootLength] == '/');
    if (!isBelow) {
        return path == m_path ? std::optional<std::size_t>(0) : std::nullopt;
    }
    std::size_t nameStart = m_rootLength + (isSlashNeeded ? 1 : 0);
    while (nameStart <= path.size()) {
        const std::size_t nameEnd = std::min(path.find('/', nameStart), path.size());
        const Key key{m_chain.back().folder,
                      std::string(path.substr(nameStart, nameEnd - nameStart))};
        const auto found = m_folders.find(key);
        if (found == m_folders.end()) {
            return std::nullopt;
        }
        m_chain.push_back({found->second, nameEnd});
        m_path.assign(path.substr(0, nameEnd));
        nameStart = nameEnd + 1;
    }
    return m_chain.back().folder;
}

void FolderChain::add(std::size_t parent, std::string_view name, std::size_t folder,
                      std::string_view path)
{
    m_folders.emplace(Key{parent, std::string(name)}, folder);
    m_chain.push_back({folder, path.size()});
    m_path.assign(path);
}

} // namespace quorvane
