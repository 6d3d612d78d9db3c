#include "inventory/InventoryFixture.h"

#include <stdexcept>

#include "support/PlatformText.h"

using nlohmann::ordered_json;

ZoCUpdateInventory& InventoryFixture::inventory()
{
    if (!updater) {
        updater = std::make_unique<OpenUpdater>(options);
        messages = std::make_unique<MessageCapture>(*updater);
    }
    return updater->getInventory();
}

int InventoryFixture::readTarget(const Json& document)
{
    simulated.reset();
    simulated = std::make_unique<SimulatedTarget>(document);
    return inventory().getInventory(errors);
}

const InventoryFixture::Element& InventoryFixture::element(std::size_t position)
{
    for (const Element& element : inventory().getUpdateElementList()) {
        if (position-- == 0) {
            return element;
        }
    }
    throw std::out_of_range("no such update element");
}

std::vector<std::string> InventoryFixture::names()
{
    std::vector<std::string> result;
    for (const Element& element : inventory().getUpdateElementList()) {
        result.push_back(str(element.name));
    }
    return result;
}

std::vector<unsigned> InventoryFixture::indices()
{
    std::vector<unsigned> result;
    for (const Element& element : inventory().getUpdateElementList()) {
        result.push_back(element.index);
    }
    return result;
}

std::vector<std::string> InventoryFixture::errorTexts() const
{
    std::vector<std::string> result;
    for (unsigned i = 0; i < errors.count(); ++i) {
        result.push_back(errors.text(i));
    }
    return result;
}

std::string InventoryFixture::printed()
{
    inventory();
    return messages->text();
}

ordered_json named(unsigned index, const std::string& name)
{
    return updateElement(index, {{"NAME", name}});
}

ordered_json named(unsigned index, const std::string& name, ordered_json parameters)
{
    parameters["NAME"] = name;
    return updateElement(index, parameters);
}
