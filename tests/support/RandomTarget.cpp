#include "support/RandomTarget.h"

namespace {

using Json = nlohmann::ordered_json;
using Values = std::vector<Json>;

const std::string nul(1, '\0');

const Values texts{"",
                   "Box",
                   "Rack 2",
                   "\xc3\x9c"
                   "nit \xf0\x9f\x98\x80",
                   "a" + nul + "b",
                   "two\nlines",
                   " a, b ",
                   "\x1b[1m\"\\/"};
const Values numbers{0, 1, 2, 3, 7, 16777231, 4294967295U};
const Values bytes{0, 1, 1, 1, 2, 255};
const Values versions{
    "1.0",    "23.2a12", "23.2", "1.2.0", "5.0",  "1.0r3p1", "1.2.3b4",  "4.1s9.7p65535", "255.255.255s255.65535p65535",
    "01.002", "3",       "0.0",  "",      "junk", "300.1",   "1.0" + nul};

}  // namespace

RandomTarget::Made RandomTarget::make()
{
    static const std::vector<std::string> roots{"ROOT", "ROOT", "ROOT", "ROOT", "ROOT", "ROOT", "HCN", "PRODUCT"};
    scriptedFaults = Json::object();
    unreadable.clear();
    readableKeys.clear();
    const std::string rootId = pick(roots);
    Twin root = item("", rootId, 0);
    if (oneIn(8)) {
        append(root, updateInfo("/" + rootId, "UPDATE_INFO"));
    }
    if (oneIn(12)) {
        append(root, element("/" + rootId, 1));  // misplaced
    }
    if (oneIn(3)) {
        const std::string unseen = id("PRODUCT", 2);
        const Json below{{"id", unseen}, {"items", Json::array({root.whole})}};
        append(root, {below, below});
    }
    for (unsigned count = below(4); count > 0; --count) {
        append(root, boardItem("/" + rootId, 0));
    }
    Json target{{"clock", "virtual"}, {"tree", root.whole}};
    if (!scriptedFaults.empty()) {
        target["script"]["values"] = scriptedFaults;
    }
    return {std::move(target), {{"tree", root.readable}}, unreadable};
}

std::string RandomTarget::addressOf(const std::string& above, const std::string& id)
{
    return above + "/" + (id.ends_with("[1]") ? id.substr(0, id.size() - 3) : id);
}

void RandomTarget::append(Twin& twin, Twin&& below)
{
    twin.whole["items"].push_back(std::move(below.whole));
    twin.readable["items"].push_back(std::move(below.readable));
}

std::string RandomTarget::id(const std::string& kind, unsigned most)
{
    const unsigned index = 1 + below(most);
    return index == 1 && oneIn(2) ? kind : kind + "[" + std::to_string(index) + "]";
}

RandomTarget::Twin RandomTarget::item(const std::string& above, const std::string& itemId, unsigned depth)
{
    Twin twin{{{"id", itemId}}, {{"id", itemId}}};
    const std::string address = addressOf(above, itemId);
    addBoardParameters(twin, address);
    addUnitParameters(twin, address);
    addUnseenParameters(twin);
    for (unsigned count = depth < 3 ? below(4 - depth) : 0; count > 0; --count) {
        append(twin, boardItem(address, depth + 1));
    }
    return twin;
}

RandomTarget::Twin RandomTarget::boardItem(const std::string& above, unsigned depth)
{
    static const std::vector<std::string> kinds{
        "HCN",      "HCN",      "CN",      "CN",       "NETC",       "BACKPLANE",        "BACKPLANE", "NETWORK", "ION",
        "IOROUTER", "IOROUTER", "NETWORK", "IOMODULE", "SUB_BOARDS", "PIGGYBACK_MODULE", "FBMODULE",  "ROOT"};
    const std::string itemId = id(pick(kinds), 3);
    Twin twin = item(above, itemId, depth + 1);
    const std::string address = addressOf(above, itemId);
    if (!oneIn(4)) {
        append(twin, updateInfo(address, oneIn(10) ? "UPDATE_INFO[2]" : "UPDATE_INFO"));
    }
    if (oneIn(20)) {
        append(twin, element(address, 3));  // misplaced
    }
    if (oneIn(3)) {
        append(twin, boardItem(address, 3));
    }
    return twin;
}

RandomTarget::Twin RandomTarget::updateInfo(const std::string& above, const std::string& infoId)
{
    Twin twin{{{"id", infoId}}, {{"id", infoId}}};
    const std::string address = addressOf(above, infoId);
    const unsigned count = below(4);
    for (unsigned number = 1; number <= count; ++number) {
        append(twin, element(address, number));
    }
    if (oneIn(25)) {
        append(twin, {{{"id", "FIRMWARE"}, {"parameters", {{"ACTIVE", 1}}}},
                      {{"id", "FIRMWARE"}, {"parameters", {{"ACTIVE", 1}}}}});
    }
    return twin;
}

RandomTarget::Twin RandomTarget::element(const std::string& above, unsigned number)
{
    static const Values names{"UserFirmware", "UserFirmware", "FactoryFirmware", "UserFpga", "IoFpga2", "Settings", "",
                              "a" + nul + "b"};
    static const Values locations{"etc/settings", "a", "*", "", "other"};
    const bool isFile = oneIn(5);
    const std::string elementId =
        (isFile ? "FILESYSTEM_ELEMENT[" : "UPDATE_ELEMENT[") + std::to_string(oneIn(15) ? 1 : number) + "]";
    Twin twin{{{"id", elementId}}, {{"id", elementId}}};
    const std::string address = addressOf(above, elementId);
    const auto sometimes = [&](unsigned missingOneIn, const char* name, const Values& values) {
        if (!oneIn(missingOneIn)) {
            add(twin, address, name, pick(values));
        }
    };
    sometimes(10, "ID", {number, number, number, 1, 0, 4294967295U});
    sometimes(8, "NAME", names);
    if (isFile) {
        sometimes(8, "LOCATION", locations);
    }
    sometimes(4, "VERSION", versions);
    sometimes(2, "VERSION_HISTORY", texts);
    sometimes(4, "CHECKSUM_CRC32", {0, 1, 2, 4294967295U});
    sometimes(3, "HW_COMPATIBILITY_ID", {0, 1, 2});
    sometimes(3, "SW_COMPATIBILITY_ID", {0, 1, 2});
    sometimes(3, "TYPE_ID", numbers);
    sometimes(25, "CONFIGURATION", {0, 0, 0, 0, 0, 1, 4294967295U});
    sometimes(3, "CUSTOM", bytes);
    sometimes(6, "VALID", bytes);
    sometimes(12, "ACTIVE", bytes);
    addUnitParameters(twin, address);
    addUnseenParameters(twin);
    return twin;
}

void RandomTarget::add(Twin& twin, const std::string& address, const std::string& name, const Json& value)
{
    Json& whole = twin.whole["parameters"][name];
    const std::string key = address + ":" + name;
    const bool isScripted = scriptedFaults.contains(key);  // for all items with this address
    if (!isScripted && (!faulty || !oneIn(12))) {
        whole = value;
        twin.readable["parameters"][name] = value;
        readableKeys.insert(key);
        return;
    }
    unreadable.push_back(name + " of " + address);
    if (isScripted) {
        whole = value;
    } else if (oneIn(3) && !readableKeys.contains(key)) {
        whole = value;
        scriptedFaults[key] = {{{"code", 5}, {"text", "no answer"}}, {{"code", 6}, {"text", "lost"}}};
    } else {
        whole = unfitting(value);
    }
}

RandomTarget::Json RandomTarget::unfitting(const Json& value)
{
    if (value.is_string()) {
        return pick(Values{0, 1, 1.5});
    }
    return pick(Values{"1", "", -1, 1.5, 4294967296U, 18446744073709551615U});
}

void RandomTarget::addBoardParameters(Twin& twin, const std::string& address)
{
    static const Values types{"KR5120", "KR5120", "KR5140", "AI8100", ""};
    static const Values variants{"", "red", "blue"};
    const auto sometimes = [&](unsigned missingOneIn, const char* name, const Values& values) {
        if (!oneIn(missingOneIn)) {
            add(twin, address, name, pick(values));
        }
    };
    sometimes(8, "PRODUCT/BOARD_TYPE", types);
    sometimes(2, "PRODUCT/VARIANT", variants);
    sometimes(2, "PRODUCT/ID", {0, 1, 2});
    sometimes(2, "PRODUCT/SERIAL_NUMBER", numbers);
    sometimes(2, "PRODUCT/SLOT_COUNT", {0, 1, 2});
    sometimes(2, "SLOT", numbers);
    sometimes(2, "PRODUCT/NAME", texts);
}

void RandomTarget::addUnitParameters(Twin& twin, const std::string& address)
{
    for (const char* const name : {"PRODUCT/UNITNAME", "PRODUCT/PACKAGE_NAME", "UNITNAME", "RACKNAME"}) {
        if (oneIn(6)) {
            add(twin, address, name, pick(texts));
        }
    }
}

void RandomTarget::addUnseenParameters(Twin& twin)
{
    if (oneIn(8)) {
        for (Json* const item : {&twin.whole, &twin.readable}) {
            (*item)["parameters"].update(Json{{"FIRMWARE/VERSION", "9.9"},
                                              {"PRODUCT/RACKNAME", 5},
                                              {"MIN_HW_COMPATIBILITY_ID", "x"},
                                              {"NAME[2]", -1}});
        }
    }
}
