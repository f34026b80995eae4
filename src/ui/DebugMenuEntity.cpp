#include "ui/DebugMenuEntity.h"

#include "entities/CameraEntity.h"
#include "entities/MapEntity.h"
#include "entities/PlayerEntity.h"
#include "gfx/Colors.h"
#include "world/WorldManager.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

namespace {

constexpr Rect kWindowRect{300, 30, 700, 20, 270, 680};
constexpr Rect kFirstButtonRect{262, 2, 678, 658, 260, 20};
constexpr Rect kLabelRect{260, 0, 20, 0, 260, 20};
constexpr std::int32_t kRowPitch = 22;

WorldManager& World() {
    return *WorldManager::GetInstance();
}

void ShowHovered(UIF_Button& button) {
    button.borderColor = kRed;
    button.fillColor = kLightGrey;
}

void ShowUnhovered(UIF_Button& button) {
    button.borderColor = kBlue;
    button.fillColor = kGrey;
}

void ResetZoom() {
    World().camera->zoom = 1.0f;
}

void GoToMapLocation() {
    MapEntity& map = *World().map;
    PlayerEntity& player = *World().player;
    player.PlaceAt(map.GetCenterWorldPosition());
    map.pan = ToVec2f(player.position) * map.worldToMap;
}

void ToggleLoadedAssets() {
    World().showLoadedAssets = !World().showLoadedAssets;
}

// Puts buttons into a window from the top down, each linked to the one above it.
class MenuBuilder {
public:
    using FlagAccess = std::function<bool&()>;

    explicit MenuBuilder(UIF_Window& menu) : window(menu) {}

    void AddAction(const char* text, void (*action)()) {
        AddRow(text).button->onClick.AddCallback([action](UIF_Button*) { action(); });
    }

    // A button that inverts a flag and then tells the flag's value.
    void AddSwitch(const char* textWhenClear, const char* textWhenSet, const FlagAccess& flag) {
        const Row row = AddRow(textWhenClear);
        row.button->onClick.AddCallback([=, label = row.label](UIF_Button*) {
            bool& value = flag();
            value = !value;
            label->text = value ? textWhenSet : textWhenClear;
        });
    }

    void AddSwitch(const char* textWhenClear, const char* textWhenSet, bool WorldManager::*flag) {
        AddSwitch(textWhenClear, textWhenSet, [flag]() -> bool& { return World().*flag; });
    }

    void SelectFirst() { first->Select(); }

private:
    struct Row {
        UIF_Button* button;
        UIF_Label* label;
    };

    Row AddRow(const char* text) {
        auto label = std::make_unique<UIF_Label>(kLabelRect, text);
        label->color = kBlack;
        auto button = std::make_unique<UIF_Button>(nextRect);
        const Row row{button.get(), label.get()};
        button->AddChild(std::move(label));
        StyleByHover(*button);
        LinkBelow(*button);
        window.AddChild(std::move(button));
        nextRect.top -= kRowPitch;
        nextRect.bottom -= kRowPitch;
        return row;
    }

    static void StyleByHover(UIF_Button& button) {
        ShowUnhovered(button);
        button.onHover.AddCallback([&button](UIF_Hoverable*) { ShowHovered(button); });
        button.onUnhover.AddCallback([&button](UIF_Hoverable*) { ShowUnhovered(button); });
    }

    void LinkBelow(UIF_Button& button) {
        button.up = lowest;
        if (lowest != nullptr) {
            lowest->down = &button;
        } else {
            first = &button;
        }
        lowest = &button;
    }

    UIF_Window& window;
    Rect nextRect = kFirstButtonRect;
    UIF_Button* first = nullptr;
    UIF_Button* lowest = nullptr;
};

} // namespace

DebugMenuEntity::DebugMenuEntity() : menuWindow(kWindowRect) {
    menuWindow.borderColor = kBlue;
    menuWindow.fillColor = kTranslucentWhite;

    MenuBuilder rows(menuWindow);
    rows.AddSwitch("Render cell border : false", "Render cell border : true",
                   &WorldManager::renderCellBorder);
    rows.AddSwitch("Render dungeon rooms : false", "Render dungeon rooms : true",
                   &WorldManager::renderDungeonRooms);
    rows.AddSwitch("Render min spanning tree : false", "Render min spanning tree : true",
                   &WorldManager::renderMinSpanningTree);
    rows.AddSwitch("Render hallways : false", "Render hallways : true",
                   &WorldManager::renderHallways);
    rows.AddAction("Reset zoom", ResetZoom);
    rows.AddSwitch("Show player info", "Hide player info", &WorldManager::showPlayerInfo);
    rows.AddAction("Go to map location", GoToMapLocation);
    rows.AddAction("Show loaded assets", ToggleLoadedAssets);
    rows.AddSwitch("Show compasses on map", "Hide compasses on map",
                   []() -> bool& { return World().map->showCompasses; });
    rows.SelectFirst();
}

void DebugMenuEntity::Update() {
    menuWindow.Update();
}

void DebugMenuEntity::Render() {
    menuWindow.Render(Rect{});
}
