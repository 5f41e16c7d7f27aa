// SPDX-License-Identifier: MIT
#include "NodeColors.h"
#include "StateFixture.h"

#include <map>
#include <string>

namespace quorvane {
namespace {

using Flags = std::map<std::string, bool>;

const Flags allShown{{"Build Artifacts", true},
                     {"Caches", true},
                     {"Docker", true},
                     {"Node.js", true},
                     {"Xcode", true}};

class AppStateSettings : public StateFixture
{
protected:
    void store(const char* key, PreferenceValue value)
    {
        platform.preferences.store(key, std::move(value));
    }

    std::optional<PreferenceValue> stored(const char* key) const
    {
        return platform.preferences.value(key);
    }

    ~AppStateSettings() override { NodeColors::setActivePalette(initialPalette); }
};

TEST_F(AppStateSettings, FirstStartIsDarkAndBlueOnSlateBySizeOnDisk)
{
    NodeColors::setActivePalette(AppPalette::forest);
    const AppState& state = start();
    EXPECT_EQ(state.theme.value(), AppTheme::dark);
    EXPECT_EQ(state.accent.value(), AccentChoice::blue);
    EXPECT_EQ(state.palette(), AppPalette::slate);
    EXPECT_EQ(state.sizeMode(), SizeMode::disk);
    EXPECT_FALSE(state.inspectorVisible());
    EXPECT_EQ(state.bloatFilters(), allShown);
    EXPECT_EQ(NodeColors::activePalette(), AppPalette::slate);
    // Reading writes nothing.
    EXPECT_TRUE(platform.preferences.writtenKeys().empty());
}

TEST_F(AppStateSettings, StoredValuesAreRead)
{
    store("tessaryl.theme", QStringLiteral("light"));
    store("tessaryl.accent", QStringLiteral("pink"));
    store("tessaryl.palette", QStringLiteral("aurora"));
    store("tessaryl.sizeMode", QStringLiteral("logical"));
    store("tessaryl.inspectorVisible", true);
    store("tessaryl.bloatFilters", Flags{{"Docker", false}, {"Xcode", true}});
    const AppState& state = start();
    EXPECT_EQ(state.theme.value(), AppTheme::light);
    EXPECT_EQ(state.accent.value(), AccentChoice::pink);
    EXPECT_EQ(state.palette(), AppPalette::aurora);
    EXPECT_EQ(NodeColors::activePalette(), AppPalette::aurora);
    EXPECT_EQ(state.sizeMode(), SizeMode::logical);
    EXPECT_TRUE(state.inspectorVisible());
    Flags expected = allShown;
    expected["Docker"] = false;
    EXPECT_EQ(state.bloatFilters(), expected);
}

TEST_F(AppStateSettings, RawValueOfAnotherTypeReadsAsTheDefault)
{
    store("tessaryl.theme", QStringLiteral("blue"));
    store("tessaryl.accent", QStringLiteral("dark"));
    store("tessaryl.palette", QStringLiteral("Slate"));
    store("tessaryl.sizeMode", QStringLiteral(""));
    const AppState& state = start();
    EXPECT_EQ(state.theme.value(), AppTheme::dark);
    EXPECT_EQ(state.accent.value(), AccentChoice::blue);
    EXPECT_EQ(state.palette(), AppPalette::slate);
    EXPECT_EQ(state.sizeMode(), SizeMode::disk);
}

TEST_F(AppStateSettings, ValueOfAnotherFormReadsAsTheDefault)
{
    store("tessaryl.theme", true);
    store("tessaryl.accent", QByteArray("pink"));
    store("tessaryl.palette", Flags{{"aurora", true}});
    store("tessaryl.sizeMode", false);
    store("tessaryl.inspectorVisible", QStringLiteral("true"));
    store("tessaryl.bloatFilters", QStringLiteral("Docker"));
    const AppState& state = start();
    EXPECT_EQ(state.theme.value(), AppTheme::dark);
    EXPECT_EQ(state.accent.value(), AccentChoice::blue);
    EXPECT_EQ(state.palette(), AppPalette::slate);
    EXPECT_EQ(state.sizeMode(), SizeMode::disk);
    EXPECT_FALSE(state.inspectorVisible());
    EXPECT_EQ(state.bloatFilters(), allShown);
}

TEST_F(AppStateSettings, EachChangeIsWrittenAtOnceUnderItsKey)
{
    AppState& state = start();
    state.setTheme(AppTheme::system);
    EXPECT_EQ(stored("tessaryl.theme"), PreferenceValue(QStringLiteral("system")));
    state.setAccent(AccentChoice::green);
    EXPECT_EQ(stored("tessaryl.accent"), PreferenceValue(QStringLiteral("green")));
    state.setPalette(AppPalette::defaultHues);
    EXPECT_EQ(stored("tessaryl.palette"), PreferenceValue(QStringLiteral("default")));
    state.setSizeMode(SizeMode::logical);
    EXPECT_EQ(stored("tessaryl.sizeMode"), PreferenceValue(QStringLiteral("logical")));
    state.setInspectorVisible(true);
    EXPECT_EQ(stored("tessaryl.inspectorVisible"), PreferenceValue(true));
    Flags filters = allShown;
    filters["Node.js"] = false;
    state.setBloatFilters(filters);
    EXPECT_EQ(stored("tessaryl.bloatFilters"), PreferenceValue(filters));
    EXPECT_EQ(platform.preferences.writtenKeys(),
              (std::vector<std::string>{"tessaryl.theme", "tessaryl.accent", "tessaryl.palette",
                                        "tessaryl.sizeMode", "tessaryl.inspectorVisible",
                                        "tessaryl.bloatFilters"}));
}

TEST_F(AppStateSettings, NextRunReadsWhatThisOneWrote)
{
    AppState& first = start();
    first.setTheme(AppTheme::light);
    first.setAccent(AccentChoice::teal);
    first.setPalette(AppPalette::ocean);
    first.setSizeMode(SizeMode::logical);
    first.setInspectorVisible(true);
    end();
    const AppState& second = start();
    EXPECT_EQ(second.theme.value(), AppTheme::light);
    EXPECT_EQ(second.accent.value(), AccentChoice::teal);
    EXPECT_EQ(second.palette(), AppPalette::ocean);
    EXPECT_EQ(second.sizeMode(), SizeMode::logical);
    EXPECT_TRUE(second.inspectorVisible());
}

TEST_F(AppStateSettings, ReadersAreToldOfAChange)
{
    AppState& state = start();
    int themes = 0;
    const auto handler = state.theme.onValueChanged([&themes] { ++themes; });
    state.setTheme(AppTheme::light);
    EXPECT_EQ(state.theme.value(), AppTheme::light);
    EXPECT_EQ(themes, 1);
}

TEST_F(AppStateSettings, PaletteReachesTheColoursBeforeItsReaders)
{
    AppState& state = start();
    AppPalette seen = AppPalette::slate;
    const auto handler =
        state.storagePalette.onValueChanged([&seen] { seen = NodeColors::activePalette(); });
    state.setPalette(AppPalette::midnight);
    EXPECT_EQ(seen, AppPalette::midnight);
}

TEST_F(AppStateSettings, UnknownFamilyIsLostAtTheNextWrite)
{
    store("tessaryl.bloatFilters", Flags{{"Fortran", false}, {"Caches", false}});
    AppState& state = start();
    EXPECT_EQ(state.bloatFilters().size(), allShown.size());
    Flags filters = state.bloatFilters();
    filters["Xcode"] = false;
    state.setBloatFilters(filters);
    Flags expected = allShown;
    expected["Caches"] = false;
    expected["Xcode"] = false;
    EXPECT_EQ(stored("tessaryl.bloatFilters"), PreferenceValue(expected));
}

TEST_F(AppStateSettings, FamilyThatWasNotStoredIsShown)
{
    store("tessaryl.bloatFilters", Flags{});
    EXPECT_EQ(start().bloatFilters(), allShown);
}

TEST_F(AppStateSettings, HiddenFamiliesAreThoseSwitchedOff)
{
    AppState& state = start();
    EXPECT_TRUE(state.disabledBloat().empty());
    Flags filters = allShown;
    filters["Docker"] = false;
    filters["Caches"] = false;
    state.setBloatFilters(filters);
    EXPECT_EQ(state.disabledBloat(), (BloatKeys{"Caches", "Docker"}));
}

TEST_F(AppStateSettings, LayoutKeyNamesHiddenFamiliesRootAndFocus)
{
    disk.folder("only");
    AppState& state = start();
    EXPECT_EQ(state.disabledBloatKey(), QStringLiteral("-0-0"));
    Flags filters = allShown;
    filters["Xcode"] = false;
    filters["Build Artifacts"] = false;
    state.setBloatFilters(filters);
    EXPECT_EQ(state.disabledBloatKey(), QStringLiteral("Build Artifacts|Xcode-0-0"));
    scan(disk.root());
    state.focus(state.share(&state.rootNode.value()->children()[0]));
    // The root's id is 0, its only entry takes the first number.
    EXPECT_EQ(state.disabledBloatKey(), QStringLiteral("Build Artifacts|Xcode-0-1"));
    state.setBloatFilters(allShown);
    EXPECT_EQ(state.disabledBloatKey(), QStringLiteral("-0-1"));
}

} // namespace
} // namespace quorvane
