#include "samples/ClockService.h"
#include "samples/HttpbinService.h"
#include "samples/LibraryService.h"

#include "runtime/service/ServiceBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace {

std::vector<std::unique_ptr<TZORestServiceClass>> Classes() {
    std::vector<std::unique_ptr<TZORestServiceClass>> classes;
    classes.push_back(TLibraryService::DeclareClass("http://127.0.0.1:1/library", "the key"));
    classes.push_back(TClockService::DeclareClass("http://127.0.0.1:1/clock"));
    classes.push_back(THttpbinService::DeclareClass("http://127.0.0.1:1"));
    return classes;
}

/// Adds AType and everything below it to ASeen.
void Walk(const TZOTypeInfo* AType, std::set<const TZOTypeInfo*>& ASeen) {
    if (!AType || !ASeen.insert(AType).second)
        return;
    if (const auto list = dynamic_cast<const ZOList::TTypeInfo*>(AType))
        Walk(list->ItemType(), ASeen);
    if (const auto map = dynamic_cast<const ZOMap::TTypeInfo*>(AType))
        Walk(map->ItemType(), ASeen);
    if (const auto object = dynamic_cast<const ZOObject::TTypeInfo*>(AType)) {
        for (int i = 0; i < object->PropertyCount(); ++i)
            Walk(object->Property(i)->Type, ASeen);
        for (const ZOObject::TSubtype& subtype : object->Subtypes())
            Walk(subtype.Type, ASeen);
    }
    if (const auto choice = dynamic_cast<const ZOUnion::TTypeInfo*>(AType)) {
        for (const ZOUnion::TTag& tag : choice->Tags())
            Walk(tag.Type, ASeen);
    }
}

} // namespace

TEST(SampleDeclarations, UseEveryKindInTheLibrary) {
    const auto library = TLibraryService::DeclareClass("http://127.0.0.1:1", "key");
    std::set<const TZOTypeInfo*> types;
    for (const auto& oper : library->TypeInfo()->Opers()) {
        Walk(oper.Request, types);
        Walk(oper.Response, types);
    }
    std::set<int> kinds;
    bool hasSubtypes = false;
    bool hasEmptyTag = false;
    bool hasAllowedValues = false;
    for (const TZOTypeInfo* type : types) {
        kinds.insert(type->Kind());
        hasAllowedValues |= !type->AllowedValues().isEmpty();
        if (const auto object = dynamic_cast<const ZOObject::TTypeInfo*>(type))
            hasSubtypes |= object->GetHasSubtypes();
        if (const auto choice = dynamic_cast<const ZOUnion::TTypeInfo*>(type))
            hasEmptyTag |= std::any_of(choice->Tags().begin(), choice->Tags().end(),
                                       [](const ZOUnion::TTag& tag) { return tag.Type == nullptr; });
    }
    EXPECT_EQ(kinds, (std::set<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}));
    EXPECT_TRUE(hasSubtypes);
    EXPECT_TRUE(hasEmptyTag);
    EXPECT_TRUE(hasAllowedValues);
}

TEST(SampleDeclarations, UseEveryPlaceInTheLibrary) {
    const auto library = TLibraryService::DeclareClass("http://127.0.0.1:1", "key");
    std::set<int> places;
    for (const auto& oper : library->TypeInfo()->Opers()) {
        for (const TZOParamBinding& param : oper.Http.Params)
            places.insert(param.Place);
    }
    EXPECT_EQ(places, (std::set<int>{ppPath, ppQuery, ppHeader, ppCookie, ppBody, ppFormField, ppFormPart}));
}

TEST(SampleDeclarations, GiveEachOperationARequestTypeOfItsOwn) {
    for (const auto& serviceClass : Classes()) {
        std::set<const TZOTypeInfo*> requests;
        std::set<QString> names;
        for (const auto& oper : serviceClass->TypeInfo()->Opers()) {
            EXPECT_TRUE(requests.insert(oper.Request).second) << oper.Name.toStdString();
            EXPECT_TRUE(names.insert(oper.Name).second) << oper.Name.toStdString();
            EXPECT_EQ(serviceClass->TypeInfo()->FindOper(oper.Request), &oper);
        }
    }
}

TEST(SampleDeclarations, BindEveryPropertyOnceAndFillEveryPath) {
    for (const auto& serviceClass : Classes()) {
        for (const auto& oper : serviceClass->TypeInfo()->Opers()) {
            SCOPED_TRACE(oper.Name.toStdString());
            QStringList bound;
            QString path = oper.Http.Path;
            for (const TZOParamBinding& param : oper.Http.Params) {
                bound.append(param.Property);
                if (param.Place == ppPath) {
                    EXPECT_TRUE(path.contains("{" + param.Property + "}"));
                    EXPECT_TRUE(oper.Request->FindProperty(param.Property)->Required);
                    path.remove("{" + param.Property + "}");
                }
            }
            EXPECT_FALSE(path.contains("{")) << path.toStdString();
            QStringList declared;
            for (int i = 0; i < oper.Request->PropertyCount(); ++i)
                declared.append(oper.Request->Property(i)->Name);
            EXPECT_EQ(bound, declared);
        }
    }
}

TEST(SampleDeclarations, DescribeEverythingInOneSentence) {
    for (const auto& serviceClass : Classes()) {
        EXPECT_FALSE(serviceClass->TypeInfo()->Description().isEmpty());
        EXPECT_EQ(serviceClass->TypeInfo()->Name(), serviceClass->ClassName());
        for (const auto& oper : serviceClass->TypeInfo()->Opers()) {
            const QString text = oper.Request->Description();
            EXPECT_TRUE(text.endsWith('.') && text.size() <= 80 && text.count(". ") == 0)
                << text.toStdString();
            for (int i = 0; i < oper.Request->PropertyCount(); ++i)
                EXPECT_FALSE(oper.Request->Property(i)->Description.isEmpty()) << oper.Name.toStdString();
        }
    }
}

TEST(SampleDeclarations, StartInstancesWithTheirCredentialsAndDefaultScopes) {
    const auto classes = Classes();
    const auto library = classes[0]->Create();
    EXPECT_EQ(library->GetApiKey(), "the key");
    EXPECT_EQ(library->ServerUrl(), "http://127.0.0.1:1/library");
    EXPECT_EQ(library->Scopes(), (QStringList{"catalogue.read", "loans.read"}));
    EXPECT_TRUE(classes[0]->TypeInfo()->NeedsCredentials());

    const auto clock = classes[1]->Create();
    EXPECT_EQ(clock->GetApiKey(), "none needed");
    EXPECT_FALSE(classes[1]->TypeInfo()->NeedsCredentials());
}

TEST(SampleDeclarations, CoverTheNamedSpecialCases) {
    const auto library = TLibraryService::DeclareClass("http://127.0.0.1:1", "key");
    const auto& opers = library->TypeInfo()->Opers();
    const auto count = [&](auto AFits) { return std::count_if(opers.begin(), opers.end(), AFits); };
    EXPECT_EQ(count([](const auto& o) { return o.Response == nullptr; }), 1);
    EXPECT_EQ(count([](const auto& o) { return o.Response && o.Response->Kind() == vkDownload; }), 2);
    EXPECT_EQ(count([](const auto& o) { return o.Request->PropertyCount() == 0; }), 1);
    EXPECT_GE(opers.size(), 15u);
    EXPECT_LE(opers.size(), 20u);
}

TEST(ServiceBuilder, IsEmptyAfterBuild) {
    TZOServiceBuilder builder("TOne", "One.", "http://127.0.0.1:1");
    builder.Operation("Ping", "Answers.", "GET", "/ping", {}, nullptr);
    EXPECT_EQ(builder.Build()->Opers().size(), 1u);
    EXPECT_EQ(builder.Build()->Opers().size(), 0u);
}

TEST(ServiceBuilder, KeepsStyleNeedAndWireName) {
    TZOServiceBuilder builder("TOne", "One.", "http://127.0.0.1:1");
    const auto text = TZOTypeLibrary::Scalar(vkString);
    builder.Operation("Ping", "Answers.", "GET", "/ping",
                      {TZOServiceParam::InQuery("a", builder.Types().NewList(text), "A.")
                           .Styled(psPipeDelimited, false)
                           .Needed(),
                       TZOServiceParam::InHeader("b", "X-B", text, "B.")},
                      nullptr);
    const auto info = builder.Build();
    const TZORestService::TOper& oper = info->Opers().front();
    EXPECT_EQ(oper.Http.Params[0].Style, psPipeDelimited);
    EXPECT_FALSE(oper.Http.Params[0].Explode);
    EXPECT_TRUE(oper.Request->Property(0)->Required);
    EXPECT_EQ(oper.Http.Params[1].WireName, "X-B");
    EXPECT_EQ(oper.Http.Params[1].Place, ppHeader);
    EXPECT_FALSE(oper.Request->Property(1)->Required);
}
