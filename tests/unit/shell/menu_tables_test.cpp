#include "shell/menu_tables.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace vantro {
namespace {

void CollectIds(std::span<const MenuItem> items, std::vector<WORD>* ids) {
  for (const MenuItem& item : items) {
    if (item.id) ids->push_back(item.id);
    CollectIds(item.submenu, ids);
  }
}

std::vector<WORD> IdsOf(std::span<const MenuItem> items) {
  std::vector<WORD> ids;
  CollectIds(items, &ids);
  return ids;
}

std::vector<SettingChoice> AllChoices() {
  std::vector<SettingChoice> choices;
  for (const Setting& setting : Settings())
    choices.insert(choices.end(), setting.choices.begin(), setting.choices.end());
  return choices;
}

TEST(MenuTables, NameEachCommandOnce) {
  std::vector<WORD> ids = IdsOf(FileMenuItems());
  CollectIds(HelpMenuItems(), &ids);
  EXPECT_EQ(std::set<WORD>(ids.begin(), ids.end()).size(), ids.size());
}

void ExpectNoIdBesideASubmenu(std::span<const MenuItem> items) {
  for (const MenuItem& item : items) {
    if (item.submenu.empty()) continue;
    EXPECT_EQ(item.id, 0);
    ExpectNoIdBesideASubmenu(item.submenu);
  }
}

TEST(MenuTables, AnItemWithASubmenuHasNoId) { ExpectNoIdBesideASubmenu(FileMenuItems()); }

TEST(MenuTables, OnlyAFlagHasAnIdAndOnlyATextHasChoices) {
  for (const Setting& setting : Settings()) {
    EXPECT_NE(setting.flag == nullptr, setting.text == nullptr);
    EXPECT_EQ(setting.menuId != 0, setting.flag != nullptr);
    EXPECT_EQ(setting.choices.empty(), setting.text == nullptr);
  }
}

TEST(MenuTables, OfferEveryMediaChoice) {
  const std::vector<WORD> ids = IdsOf(FileMenuItems());
  const std::set<WORD> offered(ids.begin(), ids.end());
  for (const SettingChoice& choice : AllChoices()) EXPECT_TRUE(offered.count(choice.id)) << choice.id;
}

TEST(MenuTables, CheckAtMostOneItemOfASetting) {
  MenuState state{};
  state.settings = {.vlcHwAccel_ = "", .vlcAudioOutput_ = "", .vlcDeinterlace_ = ""};
  state.settings.vlcHwAccel_ = "dxva2";
  for (const SettingChoice& choice : AllChoices()) {
    EXPECT_EQ(MenuItemFlags(choice.id, state), choice.id == 40022 ? UINT{MF_CHECKED} : 0u) << choice.id;
  }
}

TEST(MenuTables, CheckNothingForATextThatDiffersInCase) {
  MenuState state{};
  state.settings = {.vlcHwAccel_ = "", .vlcAudioOutput_ = "", .vlcDeinterlace_ = ""};
  state.settings.vlcHwAccel_ = "AUTO";
  for (const SettingChoice& choice : AllChoices()) EXPECT_EQ(MenuItemFlags(choice.id, state), 0u);
}

}  // namespace
}  // namespace vantro
