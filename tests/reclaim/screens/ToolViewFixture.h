// SPDX-License-Identifier: MIT
#pragma once

#include "AppState.h"
#include "Button.h"
#include "Dialog.h"
#include "DiskTree.h"
#include "FakePlatform.h"
#include "Label.h"
#include "RowLayout.h"
#include "RowView.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>

#include <filesystem>

namespace quorvane {

/// The screen of a tool in a window of its own, over a home on the disk and a Trash that takes
/// things away.
template<class View>
class ToolViewFixture : public testing::Test
{
protected:
    ToolViewFixture()
    {
        m_platform.trash.answer = [](const FilePath& path) {
            std::error_code error;
            return std::filesystem::remove_all(path.bytes(), error) > 0 ? Trash::Outcome::moved
                                                                        : Trash::Outcome::missing;
        };
        m_window.resize(1000, 700);
        m_view.resize(1000, 700);
    }

    void open()
    {
        m_window.show();
        QApplication::setActiveWindow(&m_window);
    }

    template<class T>
    T& part(const char* objectName)
    {
        return *m_window.findChild<T*>(QLatin1String(objectName));
    }

    /// Text of a label on show; empty for none.
    QString text(const char* objectName)
    {
        const auto* const label = m_window.findChild<Label*>(QLatin1String(objectName));
        return label != nullptr && label->isVisible() ? label->text() : QString();
    }

    bool waitForText(const char* objectName, const QString& expected)
    {
        const bool came =
            waitFor([&] { return text(objectName) == expected; }, std::chrono::seconds(10));
        EXPECT_TRUE(came) << text(objectName).toStdString() << " instead of "
                          << expected.toStdString();
        return came;
    }

    void click(const char* objectName)
    {
        auto& button = part<Button>(objectName);
        ASSERT_TRUE(button.isVisible()) << objectName;
        QTest::mouseClick(&button, Qt::LeftButton);
        QCoreApplication::processEvents();
    }

    RowView& list() { return *m_window.findChild<RowView*>(); }

    QModelIndex index(const QString& title)
    {
        for (int row = 0; row < list().model()->rowCount(); ++row) {
            const QModelIndex each = list().model()->index(row, 0);
            if (list().rowOf(each).title == title) {
                return each;
            }
        }
        ADD_FAILURE() << "no row " << title.toStdString();
        return {};
    }

    bool hasRow(const QString& title)
    {
        for (int row = 0; row < list().model()->rowCount(); ++row) {
            if (list().rowOf(list().model()->index(row, 0)).title == title) {
                return true;
            }
        }
        return false;
    }

    Row row(const QString& title) { return list().rowOf(index(title)); }

    void press(const QString& title, const RowPart& part)
    {
        list().scrollTo(index(title));
        const QRect rect = list().partRect(index(title), part);
        ASSERT_TRUE(rect.isValid()) << title.toStdString();
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, rect.center());
        QCoreApplication::processEvents();
    }

    Dialog* dialog() { return m_window.findChild<Dialog*>(); }

    QStringList dialogTexts()
    {
        QStringList texts;
        const QWidget* const shown = dialog();
        for (const auto* const label : shown->findChildren<Label*>()) {
            texts << label->text();
        }
        return texts;
    }

    void answer(const QString& text)
    {
        ASSERT_NE(dialog(), nullptr);
        const QWidget* const shown = dialog();
        for (auto* const button : shown->findChildren<Button*>()) {
            if (button->text() == text) {
                QTest::mouseClick(button, Qt::LeftButton);
                break;
            }
        }
        ASSERT_TRUE(waitFor([this] { return dialog() == nullptr; }));
    }

    bool isThere(std::string_view path)
    {
        return std::filesystem::exists(m_disk.path(path).bytes());
    }

    DiskTree m_disk;
    FakePlatform m_platform{m_disk.root()};
    AppState m_state{m_platform.platform()};
    QWidget m_window;
    View m_view{m_state, &m_window};
};

} // namespace quorvane
