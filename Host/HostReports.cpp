#include "Host/HostServices.h"
#include "QuenFoundation/QuenSourceControlManager.h"

#include <memory>

namespace quen {

namespace {

class SourceControlLogAspect : public MarlLogAspect {
public:
    void _logAtLogLevel(std::uint32_t level, const String& format,
                        std::span<const FormatArgument> arguments) override {
        if (_logLevel.load() >= level) {
            HostServices::shared().logHandler()(level, formatText(format.view(), arguments));
        }
    }
};

} // namespace

std::shared_ptr<MarlLogAspect> QuenSourceControlManager::sourceControlLogAspect() {
    static const auto aspect = std::make_shared<SourceControlLogAspect>();
    return aspect;
}

void MarlAssertionFailureHandler(const MarlAssertionFailure& failure) {
    HostServices::shared().assertionHandler()(failure);
}

} // namespace quen
