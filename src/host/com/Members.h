// The host's member names, each written once: every late-bound call of host/com names its member
// through this table. A name is looked up on the object it is called on, without regard to case,
// as IDispatch::GetIDsOfNames does.
#pragma once

#include <cstdint>
#include <string_view>

namespace railwright::host::com {

// The table: one X(name) per member.
#define RAILWRIGHT_HOST_MEMBERS(X) \
    /* Scripting */ \
    X(ValueText) \
    X(LengthText) \
    X(GetViewArea) \
    X(Group) \
    X(GroupCount) \
    X(RootGroup) \
    X(MaterialListCount) \
    X(MaterialList) \
    X(RotateAboutAxis) \
    X(SetFlags) \
    X(SetMode) \
    X(LightCount) \
    X(GetLight) \
    X(CollisionBoxCount) \
    X(GetCollisionBox) \
    /* HostContext */ \
    X(Application) \
    /* Application */ \
    X(RegistryName) \
    X(Redraw) \
    X(RefreshPanel) \
    X(SetStatus) \
    /* SceneGroup (and Selection's Name, SetName, Group) */ \
    X(Name) \
    X(SetName) \
    X(Parent) \
    X(MoveTo) \
    X(ShapeCount) \
    X(GetPosition) \
    X(GetBounds) \
    X(KeyCount) \
    X(SetKey) \
    X(SceneGraph) \
    X(CustomField) \
    X(SetCustomField) \
    /* SceneGraph */ \
    X(BoundingBox) \
    X(GroupFieldIndex) \
    X(AddGroupField) \
    X(MaterialFieldIndex) \
    X(AddMaterialField) \
    /* Selection as a holder of materials */ \
    X(MaterialCount) \
    X(Material) \
    /* Material */ \
    X(TextureFile) \
    X(TransparencyMap) \
    X(TranslucencyLevel) \
    X(Changed) \
    X(NormalMap) \
    X(OcclusionMap) \
    X(EmissiveMap) \
    X(MetallicRoughnessMap) \
    /* Exporter */ \
    X(ExportShape) \
    X(ExportIGS) \
    X(ExportIA) \
    /* SimulatorLocator */ \
    X(FindMSTS) \
    X(FindRailWorks) \
    /* Viewer (the view control) */ \
    X(Attach) \
    X(PointX) \
    X(PointY) \
    X(PointZ) \
    X(LookAtPoint) \
    X(EndPicking) \
    X(Selection)

enum class Member : uint8_t {
#define RAILWRIGHT_MEMBER_ENUM(name) name,
    RAILWRIGHT_HOST_MEMBERS(RAILWRIGHT_MEMBER_ENUM)
#undef RAILWRIGHT_MEMBER_ENUM
};

inline constexpr std::wstring_view kMemberNames[] = {
#define RAILWRIGHT_MEMBER_NAME(name) L## #name,
    RAILWRIGHT_HOST_MEMBERS(RAILWRIGHT_MEMBER_NAME)
#undef RAILWRIGHT_MEMBER_NAME
};

constexpr std::wstring_view MemberName(Member member) {
    return kMemberNames[static_cast<size_t>(member)];
}

// The host components that the system creates itself, by their registered names. The host's own
// names for them are not documented; these are the names the host registers them under.
// FIXME: confirm both against a host installation.
inline constexpr std::wstring_view kExporterProgId = L"PFKExport.Exporter";
inline constexpr std::wstring_view kSimulatorLocatorProgId = L"PFKSimulators.Locator";
// The host's view control.
inline constexpr std::wstring_view kViewerProgId = L"PFKEditportScripting.EditportScript";

}  // namespace railwright::host::com
