// One dialog model shown as one top-level window, its controls made from the model's controls.
// Internal to the Windows front end (see Win32UserInterface.h for what it shows and forwards).
#pragma once

#include <windows.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "support/DialogModel.h"
#include "ui/win32/Win32UserInterface.h"

namespace railwright::ui::win32 {

// What every window of the front end shares: the activation context of common controls version 6,
// the window class, the fonts, the screen's scale.
class WindowResources {
public:
    WindowResources();
    ~WindowResources();
    WindowResources(const WindowResources&) = delete;
    WindowResources& operator=(const WindowResources&) = delete;

    HINSTANCE Module() const { return module_; }
    // The activation context, or INVALID_HANDLE_VALUE when the module carries no manifest.
    HANDLE ActivationContext() const { return context_; }
    HFONT FontFor(const support::Font& font);
    // Pixels at 96 dpi to the screen's pixels.
    int Scale(int32_t pixels) const { return MulDiv(pixels, dpi_, 96); }

private:
    HINSTANCE module_ = nullptr;
    HANDLE context_ = INVALID_HANDLE_VALUE;
    int dpi_ = 96;
    std::map<std::pair<std::wstring, int>, HFONT> fonts_;
};

// Keeps the front end's activation context active for its lifetime, so that the windows and
// message boxes made meanwhile are today's common controls.
class ActivationScope {
public:
    explicit ActivationScope(const WindowResources& resources);
    ~ActivationScope();
    ActivationScope(const ActivationScope&) = delete;
    ActivationScope& operator=(const ActivationScope&) = delete;

private:
    ULONG_PTR cookie_ = 0;
    bool active_ = false;
};

class DialogWindow {
public:
    // Creates the window hidden; Show() shows it modally: over its owner, which it disables, or,
    // without one, over every other window of the thread. The destructor enables them again.
    DialogWindow(const support::DialogModel& model, HWND owner, Win32UserInterface& ui,
                 WindowResources& resources);
    ~DialogWindow();
    DialogWindow(const DialogWindow&) = delete;
    DialogWindow& operator=(const DialogWindow&) = delete;

    const support::DialogModel& Model() const { return model_; }
    HWND Handle() const { return window_; }
    HWND Owner() const { return owner_; }

    void Show();
    // Brings the window in step with the model when its revision moved (always when `force`).
    void Sync(bool force);
    void SetIdleMark(uint64_t mark);

private:
    struct ControlWindow {
        const support::Control* control = nullptr;
        HWND window = nullptr;
        int id = 0;
        // What the window shows now, so that only what the model changed is set again.
        std::string caption;
        std::string text;
        std::vector<std::string> list;
        int listIndex = -2;
        int32_t value = -1;
        int visible = -1;
        int enabled = -1;
        RECT rect{-1, -1, -1, -1};
        HFONT font = nullptr;
        std::string toolTip;
        std::vector<ViewGroup> groups;
        bool edited = false;  // a text box changed by the person since it was last set
    };

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam,
                                      LPARAM lParam) noexcept;
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
    void OnCommand(int id, int code, HWND from);
    void CreateControls();
    void OrderForTabbing();
    void SyncControl(ControlWindow& shown);
    void SyncViewList(ControlWindow& shown);
    RECT PlaceOf(const support::Control& control) const;
    SIZE ClientSize() const;
    void PlaceWindow();
    ControlWindow* Find(int id);
    void ClickButton(const support::Control* button);

    const support::DialogModel& model_;
    Win32UserInterface& ui_;
    WindowResources& resources_;
    HWND owner_ = nullptr;
    HWND window_ = nullptr;
    HWND toolTips_ = nullptr;
    std::vector<HWND> disabled_;  // the windows Show() disabled
    std::vector<ControlWindow> controls_;
    std::vector<ATOM> atoms_;
    uint64_t shownRevision_ = 0;
    bool synced_ = false;
    bool syncing_ = false;
    std::string caption_;
    int32_t left_ = 0;
    int32_t top_ = 0;
};

}  // namespace railwright::ui::win32
