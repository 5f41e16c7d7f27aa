// SPDX-License-Identifier: MIT
#pragma once

#include "AppState.h"
#include "FakePlatform.h"
#include "TreeText.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <QTest>

#include <memory>
#include <string>

namespace quorvane {

/// A model that shows a tree made from text, as if a scan had just ended.
class CanvasFixture : public ::testing::Test
{
protected:
    void showTree(const std::string& text)
    {
        m_tree = test::treeFromText(text);
        m_state.rootNode = m_tree->rootPointer();
        m_state.selectedNode = m_tree->rootPointer();
        m_state.focusNode = m_tree->rootPointer();
    }

    NodePointer node(const std::string& path)
    {
        return NodePointer(m_tree->rootPointer(), &test::nodeAt(m_tree->root(), path));
    }

    FakePlatform m_platform;
    AppState m_state{m_platform.platform()};
    std::shared_ptr<FileTree> m_tree;
};

} // namespace quorvane
