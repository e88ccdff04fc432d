// Shows what has changed in a working copy: foreign-host DIRECTORY

#include <iostream>
#include <memory>
#include <quen/Host/HostSourceTrees.h>
#include <quen/Host/PlugInLoader.h>
#include <quen/QuenFoundation/QuenSourceControlConstants.h>
#include <quen/QuenFoundation/QuenSourceControlOperation.h>
#include <quen/QuenFoundation/QuenSourceControlRequest.h>

using namespace quen;

namespace {

int fail(const Error& error) {
    std::cerr << "foreign-host: " << error.localizedDescription().view() << '\n';
    return 1;
}

QuenSourceControlRequestPtr statusRequest(const char* directory) {
    auto request = std::make_shared<QuenSourceControlRequest>();
    request->initWithType(RequestTypeStatus,
                          std::make_shared<HostWorkingTree>(
                              HostWorkingTree::Facts{.name = "mine", .location = directory}),
                          StringArray{directory}, Dictionary());
    return request;
}

void printArguments(const QuenSourceControlOperation& operation) {
    const auto* const task = dynamic_cast<const QuenSourceControlTaskOperation*>(&operation);
    if (task == nullptr || !task->arguments()) {
        return;
    }
    std::cout << "arguments:";
    for (const String& argument : *task->arguments()) {
        std::cout << ' ' << argument.view();
    }
    std::cout << '\n';
}

} // namespace

int main(int count, char** words) {
    if (count != 2) {
        std::cerr << "Usage: foreign-host DIRECTORY\n";
        return 2;
    }
    Error error;
    const auto provider = loadProvider(PROVIDER, &error);
    if (!provider) {
        return fail(error);
    }
    const auto request = statusRequest(words[1]);
    if (!provider->validateRequest(request, &error)) {
        return fail(error);
    }
    const auto operation = provider->operationForRequest(request);
    printArguments(*operation);
    operation->run();
    if (operation->error()) {
        return fail(operation->error());
    }
    if (const Array* const items = operation->result().array()) {
        for (const Value& item : *items) {
            const Dictionary& record = *item.dictionary();
            std::cout << record[QuenSourceControlOperationPathKey].stringValue().view() << '\n';
        }
    }
}
