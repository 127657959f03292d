// The model as the `inspect` command shows it.
#include <unordered_map>

#include "document/Document.h"
#include "document/DocumentState.h"

namespace railwright::document {

namespace {

Json FieldsByName(const std::vector<std::string>& names, const FieldValues& values) {
    Json fields = Json::object();
    for (size_t slot = 0; slot < names.size(); ++slot) {
        fields[names[slot]] = values[slot];
    }
    return fields;
}

}  // namespace

Json Document::Inspect() {
    const host::scene::Model& model = *state_->host.model;
    const std::vector<std::string>& groupFields = model.GroupFields().Names();
    const std::vector<std::string>& materialFields = model.MaterialFields().Names();

    Json groups = Json::array();
    std::unordered_map<const host::scene::Node*, int> indexOf;
    for (const std::shared_ptr<host::scene::Node>& group : model.GroupOrder()) {
        const auto index = static_cast<int>(indexOf.size());
        indexOf[group.get()] = index;
        const std::shared_ptr<host::scene::Node> parent = group->ParentNode();
        Json entry = Json::object();
        entry["index"] = index;
        entry["name"] = group->NameValue();
        entry["parent"] = parent ? indexOf.at(parent.get()) : -1;
        entry["shapes"] = group->Shapes().size();
        entry["keys"] = group->Keys().size();
        entry["fields"] = FieldsByName(groupFields, group->CustomFields());
        groups.push_back(std::move(entry));
    }

    Json materials = Json::array();
    for (const auto& holder : model.MaterialHolders()) {
        for (const auto& material : holder->Materials()) {
            Json entry = Json::object();
            entry["holder"] = holder->NameValue();
            entry["texture"] = material->Properties().textureFile;
            entry["fields"] = FieldsByName(materialFields, material->CustomFields());
            materials.push_back(std::move(entry));
        }
    }

    Json singles = Json::array();
    for (const float value : state_->data.singles) {
        singles.push_back(ShortestDecimal(value));
    }
    Json inspection = Json::object();
    inspection["groups"] = std::move(groups);
    inspection["materials"] = std::move(materials);
    inspection["groupFields"] = groupFields;
    inspection["materialFields"] = materialFields;
    inspection["settings"] = {{"singles", std::move(singles)},
                              {"longs", state_->data.longs},
                              {"string", state_->data.text}};
    return inspection;
}

}  // namespace railwright::document
