#include "ui/win32/DialogWindow.h"

#include <commctrl.h>

#include <algorithm>
#include <cmath>

#include "support/win32/Win32Services.h"

namespace railwright::ui::win32 {
namespace {

using support::Control;
using support::ControlKind;
using support::win32::Narrow;
using support::win32::Widen;

constexpr wchar_t kWindowClass[] = L"RailwrightDialog";
constexpr wchar_t kDialogProperty[] = L"Railwright.Dialog";
constexpr wchar_t kControlProperty[] = L"Railwright.Control";
constexpr wchar_t kIndexProperty[] = L"Railwright.Index";
constexpr wchar_t kIdleProperty[] = L"Railwright.Idle";
// Control ids start above IDOK and IDCANCEL, which stand for Enter and Escape.
constexpr int kFirstControlId = 1000;
// The manifest resource that asks for common controls version 6 (ISOLATIONAWARE_MANIFEST_RESOURCE_ID).
constexpr WORD kManifestResource = 2;
// A text box this high or higher takes several lines.
constexpr int32_t kMultiLineHeight = 40;
// The room a closed drop-down list gives its entries when opened.
constexpr int32_t kDropDownHeight = 200;
constexpr int32_t kMargin = 8;

HINSTANCE ThisModule() {
    HMODULE module = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCWSTR>(&ThisModule), &module);
    return module;
}

std::wstring Text(HWND window) {
    const int length = GetWindowTextLengthW(window);
    std::wstring text(static_cast<size_t>(length) + 1, L'\0');
    text.resize(static_cast<size_t>(GetWindowTextW(window, text.data(), length + 1)));
    return text;
}

bool ShownWithContainers(const Control& control) {
    for (const Control* outer = &control; outer != nullptr; outer = outer->Container()) {
        if (!outer->Visible()) {
            return false;
        }
    }
    return true;
}

bool EnabledWithContainers(const Control& control) {
    for (const Control* outer = &control; outer != nullptr; outer = outer->Container()) {
        if (!outer->Enabled()) {
            return false;
        }
    }
    return true;
}

int Depth(const Control& control) {
    int depth = 0;
    for (const Control* outer = control.Container(); outer != nullptr; outer = outer->Container()) {
        ++depth;
    }
    return depth;
}

struct WindowKind {
    const wchar_t* className;
    DWORD style;
    DWORD extendedStyle;
};

WindowKind KindOf(const Control& control, bool isDefault) {
    switch (control.Kind()) {
        case ControlKind::Label:
            return {L"STATIC", SS_LEFT | SS_NOPREFIX, 0};
        case ControlKind::TextBox:
            return {L"EDIT",
                    control.Height() >= kMultiLineHeight
                        ? DWORD{WS_TABSTOP | ES_MULTILINE | ES_AUTOVSCROLL | ES_WANTRETURN |
                                WS_VSCROLL}
                        : DWORD{WS_TABSTOP | ES_AUTOHSCROLL},
                    WS_EX_CLIENTEDGE};
        case ControlKind::CheckBox:
            return {L"BUTTON", BS_CHECKBOX | BS_MULTILINE | WS_TABSTOP, 0};
        case ControlKind::OptionButton:
            return {L"BUTTON", BS_RADIOBUTTON | BS_MULTILINE | WS_TABSTOP, 0};
        case ControlKind::ComboBox:
            return {L"COMBOBOX", CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP, 0};
        case ControlKind::CommandButton:
            return {L"BUTTON", DWORD(isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON) | WS_TABSTOP, 0};
        case ControlKind::Frame:
            return {L"BUTTON", BS_GROUPBOX, WS_EX_TRANSPARENT};
        case ControlKind::View:
            break;
    }
    return {L"LISTBOX", LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_TABSTOP,
            WS_EX_CLIENTEDGE};
}

std::wstring ElementName(const std::string& name) { return Widen(name); }

}  // namespace

// --- shared resources ---

WindowResources::WindowResources() : module_(ThisModule()) {
    ACTCTXW request{};
    request.cbSize = sizeof request;
    request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    request.hModule = module_;
    request.lpResourceName = MAKEINTRESOURCEW(kManifestResource);
    context_ = CreateActCtxW(&request);
    {
        ActivationScope scope(*this);
        INITCOMMONCONTROLSEX controls{sizeof controls, ICC_STANDARD_CLASSES | ICC_WIN95_CLASSES};
        InitCommonControlsEx(&controls);
    }
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    // Each window takes its own procedure once it is made (DialogWindow::Procedure).
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = module_;
    windowClass.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));  // IDC_ARROW
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = kWindowClass;
    // The class may be left from an earlier application of the plug-in: that is fine.
    RegisterClassExW(&windowClass);
    if (HDC screen = GetDC(nullptr)) {
        dpi_ = GetDeviceCaps(screen, LOGPIXELSY);
        ReleaseDC(nullptr, screen);
    }
}

WindowResources::~WindowResources() {
    for (const auto& [key, font] : fonts_) {
        DeleteObject(font);
    }
    if (context_ != INVALID_HANDLE_VALUE) {
        ReleaseActCtx(context_);
    }
}

HFONT WindowResources::FontFor(const support::Font& font) {
    const int height = -static_cast<int>(std::lround(font.size * dpi_ / 72.0));
    const std::pair key{Widen(font.name), height};
    if (auto found = fonts_.find(key); found != fonts_.end()) {
        return found->second;
    }
    HFONT made = CreateFontW(height, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                             OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                             DEFAULT_PITCH | FF_DONTCARE, key.first.c_str());
    fonts_.emplace(key, made);
    return made;
}

ActivationScope::ActivationScope(const WindowResources& resources) {
    if (resources.ActivationContext() != INVALID_HANDLE_VALUE) {
        active_ = ActivateActCtx(resources.ActivationContext(), &cookie_) != FALSE;
    }
}

ActivationScope::~ActivationScope() {
    if (active_) {
        DeactivateActCtx(0, cookie_);
    }
}

// --- the dialog's window ---

DialogWindow::DialogWindow(const support::DialogModel& model, HWND owner, Win32UserInterface& ui,
                           WindowResources& resources)
    : model_(model), ui_(ui), resources_(resources), owner_(owner) {
    ActivationScope scope(resources_);
    const DWORD style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
    window_ = CreateWindowExW(WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT, kWindowClass,
                              Widen(model_.Caption()).c_str(), style, CW_USEDEFAULT,
                              CW_USEDEFAULT, 100, 100, owner_, nullptr, resources_.Module(),
                              nullptr);
    if (window_ == nullptr) {
        return;
    }
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&DialogWindow::Procedure));
    const ATOM dialogAtom = GlobalAddAtomW(ElementName(model_.Name()).c_str());
    atoms_.push_back(dialogAtom);
    SetPropW(window_, kDialogProperty, reinterpret_cast<HANDLE>(static_cast<uintptr_t>(dialogAtom)));
    SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(resources_.FontFor(model_.FormFont())),
                 FALSE);
    CreateControls();
    OrderForTabbing();
}

DialogWindow::~DialogWindow() {
    // What Show() disabled is enabled before the window goes, so that it takes the activation back.
    for (HWND window : disabled_) {
        if (IsWindow(window)) {
            EnableWindow(window, TRUE);
        }
    }
    if (owner_ != nullptr && IsWindow(owner_)) {
        SetActiveWindow(owner_);
    }
    if (window_ != nullptr) {
        for (const ControlWindow& shown : controls_) {
            RemovePropW(shown.window, kControlProperty);
            RemovePropW(shown.window, kIndexProperty);
        }
        RemovePropW(window_, kDialogProperty);
        RemovePropW(window_, kIdleProperty);
        SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
        DestroyWindow(window_);
    }
    if (toolTips_ != nullptr) {
        DestroyWindow(toolTips_);
    }
    for (ATOM atom : atoms_) {
        GlobalDeleteAtom(atom);
    }
}

void DialogWindow::CreateControls() {
    const std::vector<const Control*> controls = model_.Controls();
    controls_.reserve(controls.size());
    for (size_t position = 0; position < controls.size(); ++position) {
        const Control& control = *controls[position];
        const WindowKind kind = KindOf(control, &control == model_.DefaultButton());
        ControlWindow shown;
        shown.control = &control;
        shown.id = kFirstControlId + static_cast<int>(position);
        shown.window = CreateWindowExW(
            kind.extendedStyle, kind.className, L"", WS_CHILD | WS_CLIPSIBLINGS | kind.style, 0, 0,
            0, 0, window_, reinterpret_cast<HMENU>(static_cast<intptr_t>(shown.id)),
            resources_.Module(), nullptr);
        if (shown.window == nullptr) {
            continue;
        }
        const ATOM name = GlobalAddAtomW(ElementName(control.Name()).c_str());
        atoms_.push_back(name);
        SetPropW(shown.window, kControlProperty,
                 reinterpret_cast<HANDLE>(static_cast<uintptr_t>(name)));
        SetPropW(shown.window, kIndexProperty,
                 reinterpret_cast<HANDLE>(static_cast<intptr_t>(control.Index() + 1)));
        controls_.push_back(std::move(shown));
    }
}

// Tab visits the controls in the order of their TabIndex, which is the order of the windows;
// frames lie under what they hold, outer frames lowest.
void DialogWindow::OrderForTabbing() {
    std::vector<const ControlWindow*> order;
    for (const ControlWindow& shown : controls_) {
        order.push_back(&shown);
    }
    std::stable_sort(order.begin(), order.end(),
                     [](const ControlWindow* a, const ControlWindow* b) {
                         const bool aFrame = a->control->Kind() == ControlKind::Frame;
                         const bool bFrame = b->control->Kind() == ControlKind::Frame;
                         if (aFrame != bFrame) {
                             return bFrame;
                         }
                         if (aFrame) {
                             return Depth(*a->control) > Depth(*b->control);
                         }
                         return a->control->TabIndex() < b->control->TabIndex();
                     });
    for (const ControlWindow* shown : order) {
        SetWindowPos(shown->window, HWND_BOTTOM, 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
}

RECT DialogWindow::PlaceOf(const Control& control) const {
    int32_t left = control.Left();
    int32_t top = control.Top();
    for (const Control* outer = control.Container(); outer != nullptr; outer = outer->Container()) {
        left += outer->Left();
        top += outer->Top();
    }
    const int32_t height =
        control.Height() + (control.Kind() == ControlKind::ComboBox ? kDropDownHeight : 0);
    return {resources_.Scale(left), resources_.Scale(top),
            resources_.Scale(left + control.Width()), resources_.Scale(top + height)};
}

// The model's client size; a model that gives none gets room for every control.
SIZE DialogWindow::ClientSize() const {
    if (model_.Width() > 0 && model_.Height() > 0) {
        return {resources_.Scale(model_.Width()), resources_.Scale(model_.Height())};
    }
    SIZE size{resources_.Scale(240), resources_.Scale(96)};
    for (const ControlWindow& shown : controls_) {
        RECT place = PlaceOf(*shown.control);
        if (shown.control->Kind() == ControlKind::ComboBox) {
            place.bottom -= resources_.Scale(kDropDownHeight);
        }
        size.cx = std::max<LONG>(size.cx, place.right + resources_.Scale(kMargin));
        size.cy = std::max<LONG>(size.cy, place.bottom + resources_.Scale(kMargin));
    }
    return size;
}

void DialogWindow::PlaceWindow() {
    const SIZE client = ClientSize();
    RECT frame{0, 0, client.cx, client.cy};
    AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_EXSTYLE)));
    const int width = frame.right - frame.left;
    const int height = frame.bottom - frame.top;
    int left = model_.Left();
    int top = model_.Top();
    RECT ownerPlace;
    if (left == 0 && top == 0 && owner_ != nullptr && GetWindowRect(owner_, &ownerPlace)) {
        left = (ownerPlace.left + ownerPlace.right - width) / 2;
        top = (ownerPlace.top + ownerPlace.bottom - height) / 2;
    }
    SetWindowPos(window_, nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
    left_ = model_.Left();
    top_ = model_.Top();
}

namespace {

BOOL CALLBACK DisableThreadWindow(HWND window, LPARAM disabled) noexcept {
    if (IsWindowVisible(window) && IsWindowEnabled(window)) {
        EnableWindow(window, FALSE);
        reinterpret_cast<std::vector<HWND>*>(disabled)->push_back(window);
    }
    return TRUE;
}

}  // namespace

void DialogWindow::Show() {
    if (owner_ != nullptr) {
        if (IsWindowEnabled(owner_)) {
            EnableWindow(owner_, FALSE);
            disabled_.push_back(owner_);
        }
    } else {
        EnumThreadWindows(GetCurrentThreadId(), &DisableThreadWindow,
                          reinterpret_cast<LPARAM>(&disabled_));
    }
    ShowWindow(window_, SW_SHOW);
    SetForegroundWindow(window_);
    if (HWND first = GetNextDlgTabItem(window_, nullptr, FALSE)) {
        SetFocus(first);
    }
}

void DialogWindow::SetIdleMark(uint64_t mark) {
    SetPropW(window_, kIdleProperty, reinterpret_cast<HANDLE>(static_cast<uintptr_t>(mark)));
}

void DialogWindow::Sync(bool force) {
    if (window_ == nullptr || (!force && synced_ && model_.Revision() == shownRevision_)) {
        return;
    }
    syncing_ = true;
    ActivationScope scope(resources_);
    if (!synced_ || model_.Caption() != caption_) {
        caption_ = model_.Caption();
        SetWindowTextW(window_, Widen(caption_).c_str());
    }
    if (!synced_ || model_.Left() != left_ || model_.Top() != top_) {
        PlaceWindow();
    }
    for (ControlWindow& shown : controls_) {
        SyncControl(shown);
    }
    syncing_ = false;
    synced_ = true;
    shownRevision_ = model_.Revision();
}

void DialogWindow::SyncControl(ControlWindow& shown) {
    const Control& control = *shown.control;
    HWND window = shown.window;
    const RECT place = PlaceOf(control);
    if (!EqualRect(&place, &shown.rect)) {
        shown.rect = place;
        SetWindowPos(window, nullptr, place.left, place.top, place.right - place.left,
                     place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
    }
    const support::Font& font = control.GetFont() ? *control.GetFont() : model_.FormFont();
    if (HFONT handle = resources_.FontFor(font); handle != shown.font) {
        shown.font = handle;
        SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(handle), TRUE);
    }
    switch (control.Kind()) {
        case ControlKind::TextBox:
            if (control.Text() != shown.text || !synced_) {
                shown.text = control.Text();
                SetWindowTextW(window, Widen(shown.text).c_str());
                shown.edited = false;
            }
            break;
        case ControlKind::ComboBox:
            if (control.List() != shown.list) {
                shown.list = control.List();
                SendMessageW(window, CB_RESETCONTENT, 0, 0);
                for (const std::string& entry : shown.list) {
                    SendMessageW(window, CB_ADDSTRING, 0,
                                 reinterpret_cast<LPARAM>(Widen(entry).c_str()));
                }
                shown.listIndex = -2;
            }
            if (control.ListIndex() != shown.listIndex) {
                shown.listIndex = control.ListIndex();
                SendMessageW(window, CB_SETCURSEL, static_cast<WPARAM>(shown.listIndex), 0);
            }
            break;
        case ControlKind::View:
            SyncViewList(shown);
            break;
        case ControlKind::Label:
        case ControlKind::CheckBox:
        case ControlKind::OptionButton:
        case ControlKind::CommandButton:
        case ControlKind::Frame:
            if (control.Caption() != shown.caption || !synced_) {
                shown.caption = control.Caption();
                SetWindowTextW(window, Widen(shown.caption).c_str());
            }
            break;
    }
    if ((control.Kind() == ControlKind::CheckBox || control.Kind() == ControlKind::OptionButton) &&
        control.Value() != shown.value) {
        shown.value = control.Value();
        SendMessageW(window, BM_SETCHECK, shown.value != 0 ? BST_CHECKED : BST_UNCHECKED, 0);
    }
    if (control.ToolTipText() != shown.toolTip) {
        shown.toolTip = control.ToolTipText();
        if (toolTips_ == nullptr) {
            toolTips_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                                        WS_POPUP | TTS_ALWAYSTIP, CW_USEDEFAULT, CW_USEDEFAULT,
                                        CW_USEDEFAULT, CW_USEDEFAULT, window_, nullptr,
                                        resources_.Module(), nullptr);
            SendMessageW(toolTips_, TTM_SETMAXTIPWIDTH, 0, 400);
        }
        std::wstring tip = Widen(shown.toolTip);
        TTTOOLINFOW tool{};
        tool.cbSize = sizeof tool;
        tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
        tool.hwnd = window_;
        tool.uId = reinterpret_cast<UINT_PTR>(window);
        tool.lpszText = tip.data();
        SendMessageW(toolTips_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
        if (!tip.empty()) {
            SendMessageW(toolTips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
        }
    }
    // A frame without a caption only holds controls: nothing of it is drawn.
    const int visible = ShownWithContainers(control) &&
                        (control.Kind() != ControlKind::Frame || !control.Caption().empty());
    const int enabled = EnabledWithContainers(control);
    if (enabled != shown.enabled) {
        shown.enabled = enabled;
        EnableWindow(window, enabled);
    }
    if (visible != shown.visible) {
        shown.visible = visible;
        ShowWindow(window, visible ? SW_SHOWNA : SW_HIDE);
    }
}

void DialogWindow::SyncViewList(ControlWindow& shown) {
    const std::vector<ViewGroup>& groups = ui_.ViewGroups();
    if (groups == shown.groups) {
        return;
    }
    shown.groups = groups;
    const LRESULT top = SendMessageW(shown.window, LB_GETTOPINDEX, 0, 0);
    SendMessageW(shown.window, WM_SETREDRAW, FALSE, 0);
    SendMessageW(shown.window, LB_RESETCONTENT, 0, 0);
    for (const ViewGroup& group : groups) {
        const std::wstring entry =
            std::wstring(static_cast<size_t>(std::max(group.depth, 0)) * 4, L' ') +
            Widen(group.name);
        SendMessageW(shown.window, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
    }
    SendMessageW(shown.window, LB_SETTOPINDEX, static_cast<WPARAM>(top), 0);
    SendMessageW(shown.window, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(shown.window, nullptr, TRUE);
}

DialogWindow::ControlWindow* DialogWindow::Find(int id) {
    const int position = id - kFirstControlId;
    if (position < 0 || position >= static_cast<int>(controls_.size()) ||
        controls_[static_cast<size_t>(position)].id != id) {
        for (ControlWindow& shown : controls_) {
            if (shown.id == id) {
                return &shown;
            }
        }
        return nullptr;
    }
    return &controls_[static_cast<size_t>(position)];
}

namespace {

support::UserEvent EventFor(support::UserEventKind kind, const Control& control,
                            std::string text = {}) {
    support::UserEvent event;
    event.kind = kind;
    event.control = control.Name();
    if (control.Index() >= 0) {
        event.index = control.Index();
    }
    event.text = std::move(text);
    return event;
}

}  // namespace

// Enter and Escape press the default and cancel buttons; a text box being edited is left first,
// so that its rules see the text before the button's do.
void DialogWindow::ClickButton(const Control* button) {
    if (button == nullptr) {
        return;
    }
    for (ControlWindow& shown : controls_) {
        if (shown.edited) {
            shown.edited = false;
            ui_.Post(model_, EventFor(support::UserEventKind::Type, *shown.control,
                                      Narrow(Text(shown.window))));
        }
    }
    ui_.Post(model_, EventFor(support::UserEventKind::Click, *button));
}

void DialogWindow::OnCommand(int id, int code, HWND from) {
    (void)from;
    if (id == IDOK && code <= 1) {
        ClickButton(model_.DefaultButton());
        return;
    }
    if (id == IDCANCEL && code <= 1) {
        ClickButton(model_.CancelButton());
        return;
    }
    ControlWindow* shown = Find(id);
    if (shown == nullptr || syncing_) {
        return;
    }
    const Control& control = *shown->control;
    switch (control.Kind()) {
        case ControlKind::CommandButton:
        case ControlKind::CheckBox:
        case ControlKind::OptionButton:
            if (code == BN_CLICKED) {
                ui_.Post(model_, EventFor(support::UserEventKind::Click, control));
            }
            break;
        case ControlKind::ComboBox:
            if (code == CBN_SELCHANGE) {
                const LRESULT chosen = SendMessageW(shown->window, CB_GETCURSEL, 0, 0);
                if (chosen >= 0 && static_cast<size_t>(chosen) < control.List().size()) {
                    shown->listIndex = static_cast<int>(chosen);
                    ui_.Post(model_, EventFor(support::UserEventKind::Select, control,
                                              control.List()[static_cast<size_t>(chosen)]));
                }
            }
            break;
        case ControlKind::TextBox:
            if (code == EN_CHANGE) {
                shown->edited = true;
            } else if (code == EN_KILLFOCUS) {
                // A multi-line box says nothing of a text set by WM_SETTEXT (an automation
                // tool's typing): a text that differs from the model's was typed too.
                std::string typed = Narrow(Text(shown->window));
                if (shown->edited || typed != shown->text) {
                    shown->edited = false;
                    ui_.Post(model_,
                             EventFor(support::UserEventKind::Type, control, std::move(typed)));
                }
            }
            break;
        case ControlKind::View:
            if (code == LBN_SELCHANGE) {
                const LRESULT chosen = SendMessageW(shown->window, LB_GETCURSEL, 0, 0);
                // The list only stands for the view: the next click on the same group picks it
                // again.
                SendMessageW(shown->window, LB_SETCURSEL, static_cast<WPARAM>(-1), 0);
                if (chosen >= 0) {
                    support::UserEvent pick;
                    pick.kind = support::UserEventKind::Pick;
                    pick.group = static_cast<int32_t>(chosen);
                    ui_.Post(model_, std::move(pick));
                }
            }
            break;
        case ControlKind::Label:
        case ControlKind::Frame:
            break;
    }
}

LRESULT DialogWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            OnCommand(LOWORD(wParam), HIWORD(wParam), reinterpret_cast<HWND>(lParam));
            return 0;
        case WM_CLOSE:
            ui_.RequestClose(model_);
            return 0;
        case WM_ENTERIDLE:
            // A message box over this window waits for the person.
            ui_.MarkIdle();
            return 0;
        default:
            return DefWindowProcW(window_, message, wParam, lParam);
    }
}

LRESULT CALLBACK DialogWindow::Procedure(HWND window, UINT message, WPARAM wParam,
                                         LPARAM lParam) noexcept {
    auto* self = reinterpret_cast<DialogWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    try {
        return self->Handle(message, wParam, lParam);
    } catch (...) {
        // Nothing unwinds out of a window procedure; the event is lost, the window stays.
        return 0;
    }
}

}  // namespace railwright::ui::win32
