#include "shell/PageFactory.h"

#include "platform/Exceptions.h"

#include <utility>

namespace {

IZOPageFactory* GFactory = nullptr;

} // namespace

IZOPageFactory* SetPageFactory(IZOPageFactory* AFactory) { return std::exchange(GFactory, AFactory); }

IZOPageFactory& PageFactory() {
    if (!GFactory)
        throw EException(QStringLiteral("The explorer's pages have not been started"));
    return *GFactory;
}
