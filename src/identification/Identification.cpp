#include "identification/Identification.h"

#include <algorithm>
#include <optional>

#include "support/SupportingFunctions.h"

namespace railwright::identification {
namespace {

constexpr std::string_view kParentMissing =
    "Unable to move group. The intended parent group does not exist. If you have skipped some of "
    "the part identification steps you will need to close this wizard and re-run it.";
constexpr std::string_view kPromptStart = "Please select ";
constexpr std::string_view kPromptEnd = ".";
constexpr std::string_view kIdentificationComplete = "Part identification complete.";

constexpr std::string_view kBogiePrefix = "BOGIE";

// The parent that an identified group's name calls for.
struct ParentRule {
    // The present parent's name that means the group is already in place.
    std::string inPlaceName;
    // The group to move it under.
    std::string parentName;
};

ParentRule Under(std::string parentName) {
    return {parentName, parentName};
}

// The rules for every name but "Main", tested in this order; the first that holds decides.
// Empty for names that stay where they are (rods, placeholders).
std::optional<ParentRule> ParentRuleFor(std::string_view name) {
    const auto begins = [name](std::string_view prefix) {
        return support::StartsWithIgnoreCase(name, prefix);
    };
    // The characters after the first `count`.
    const auto after = [name](size_t count) {
        return std::string(name.substr(std::min(count, name.size())));
    };
    if (begins("Bogie")) {
        return Under(std::string(kMainGroupName));
    }
    if (begins("Wheels1") && name.size() >= 8) {
        return Under("Bogie1");
    }
    if (begins("Wheels2") && name.size() >= 8) {
        return Under("Bogie2");
    }
    if (begins("Wheels") && name.size() == 7) {  // a steam engine's drive wheelset
        return Under(std::string(kMainGroupName));
    }
    if (support::EqualsIgnoreCase(name, "Main_Wheel_Link")) {
        return Under("Wheels1");
    }
    if (begins("WiperArm")) {
        return Under(std::string(kMainGroupName));
    }
    if (begins("WiperBlade")) {
        return Under("WiperArm" + after(10));
    }
    if (begins("Mirror")) {
        return Under(std::string(kMainGroupName));
    }
    if (begins("PantographBottom")) {
        return Under(std::string(kMainGroupName));
    }
    if (begins("PantographMiddle")) {
        return Under("PantographBottom" + after(16));
    }
    if (begins("PantographTop")) {
        // The in-place names are spelt "Pantrograph" and never match a correctly named parent,
        // so a top is always moved; moving it under its present parent does no harm. Kept so.
        // Only A and B mark a three-arm pantograph: a third one's top goes to a bottom "1C",
        // which does not exist. Kept so.
        const char last = support::ToUpper(name.substr(name.size() - 1)).front();
        if (last == 'A' || last == 'B') {
            return ParentRule{"PantrographMiddle" + after(13), "PantographMiddle" + after(13)};
        }
        return ParentRule{"PantrographBottom" + after(13), "PantographBottom" + after(13)};
    }
    if (begins("Piston")) {
        return Under(std::string(kMainGroupName));
    }
    return std::nullopt;
}

enum class MissingBogie { Silent, Reported };

void MoveUnder(IdentificationContext& context, host::SceneGroup& group,
               const std::string& parentName, MissingBogie missingBogie) {
    if (const std::shared_ptr<host::SceneGroup> parent =
            FindGroupNamed(context.scene, parentName)) {
        group.MoveTo(*parent);
        return;
    }
    // Wheels without a bogie legitimately have no "Bogie1" or "Bogie2".
    if (missingBogie == MissingBogie::Silent &&
        support::StartsWithIgnoreCase(parentName, kBogiePrefix)) {
        return;
    }
    if (!context.moveWarningShown) {
        context.ui.ShowMessage(kParentMissing, support::MessageIcon::Exclamation,
                               support::MessageButtons::Ok);
        context.moveWarningShown = true;
    }
}

}  // namespace

std::shared_ptr<host::SceneGroup> FindGroupNamed(host::Scripting& scene, std::string_view name) {
    const int32_t count = scene.GroupCount();
    for (int32_t i = 0; i < count; ++i) {
        std::shared_ptr<host::SceneGroup> group = scene.Group(i);
        if (support::EqualsIgnoreCase(group->Name(), name)) {
            return group;
        }
    }
    return nullptr;
}

void MoveSelectedGroupUnder(IdentificationContext& context, host::Selection& pick,
                            const std::string& parentName) {
    MoveUnder(context, *pick.Group(), parentName, MissingBogie::Silent);
}

void MoveGroupUnder(IdentificationContext& context, host::SceneGroup& group,
                    const std::string& parentName) {
    MoveUnder(context, group, parentName, MissingBogie::Reported);
}

void IdentifySelectedGroup(IdentificationContext& context, host::Selection& pick,
                           const std::string& groupName, const std::string& projectTitle) {
    const std::shared_ptr<host::SceneGroup> group = pick.Group();
    group->SetName(groupName);
    pick.SetName(groupName);
    // The top group has no parent; it is then in no rule's place.
    const std::shared_ptr<host::SceneGroup> parent = group->Parent();

    if (support::EqualsIgnoreCase(groupName, kMainGroupName)) {
        const std::shared_ptr<host::SceneGroup> root = context.scene.RootGroup();
        if (!parent || !parent->IsSameGroup(*root)) {
            MoveSelectedGroupUnder(context, pick, projectTitle);
        }
        return;
    }
    const std::optional<ParentRule> rule = ParentRuleFor(groupName);
    if (!rule) {
        return;
    }
    const std::string parentName = parent ? parent->Name() : std::string();
    if (!support::EqualsIgnoreCase(parentName, rule->inPlaceName)) {
        MoveSelectedGroupUnder(context, pick, rule->parentName);
    }
}

bool FindNextMissingPart(host::Scripting& scene, PartCatalogue& catalogue) {
    for (int32_t i = std::max(catalogue.position, 0); i < catalogue.Count(); ++i) {
        PartEntry& entry = catalogue.entries[static_cast<size_t>(i)];
        if (entry.Identified) {
            continue;
        }
        if (FindGroupNamed(scene, entry.GroupName)) {
            entry.Identified = true;
            continue;
        }
        catalogue.position = i;
        return true;
    }
    return false;
}

std::string IdentificationPrompt(const PartCatalogue& catalogue, bool asking) {
    if (!asking) {
        return std::string(kIdentificationComplete);
    }
    return std::string(kPromptStart) +
           catalogue.entries.at(static_cast<size_t>(catalogue.position)).Description +
           std::string(kPromptEnd);
}

}  // namespace railwright::identification
