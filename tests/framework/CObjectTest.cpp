#include <cstring>
#include <memory>

#include <gtest/gtest.h>

#include "CFileException.h"
#include "CObject.h"

// Dynamic classes live outside an unnamed namespace, as the framework's macros expect.
static int g_shapesDestroyed = 0;

class CTestShape : public CObject {
    DECLARE_DYNAMIC(CTestShape)
public:
    ~CTestShape() override { ++g_shapesDestroyed; }
};

class CTestCircle : public CTestShape {
    DECLARE_DYNCREATE(CTestCircle)
public:
    int m_radius = 5;
};

IMPLEMENT_DYNAMIC(CTestShape, CObject)
IMPLEMENT_DYNCREATE(CTestCircle, CTestShape)

namespace {

TEST(CObjectTest, RuntimeClassRecordsFollowTheClassTree) {
    const CRuntimeClass* circle = RUNTIME_CLASS(CTestCircle);
    EXPECT_STREQ("CTestCircle", circle->m_lpszClassName);
    EXPECT_EQ(static_cast<int>(sizeof(CTestCircle)), circle->m_nObjectSize);
    EXPECT_EQ(0xFFFFu, circle->m_wSchema);
    EXPECT_EQ(RUNTIME_CLASS(CTestShape), circle->m_pBaseClass);
    EXPECT_EQ(RUNTIME_CLASS(CObject), RUNTIME_CLASS(CTestShape)->m_pBaseClass);
    EXPECT_EQ(nullptr, RUNTIME_CLASS(CObject)->m_pBaseClass);
    EXPECT_EQ(circle, CTestCircle::GetThisClass());

    EXPECT_TRUE(circle->IsDerivedFrom(RUNTIME_CLASS(CObject)));
    EXPECT_FALSE(RUNTIME_CLASS(CTestShape)->IsDerivedFrom(circle));
    EXPECT_FALSE(circle->IsDerivedFrom(nullptr));
    EXPECT_FALSE(circle->IsDerivedFrom(RUNTIME_CLASS(CException)));
}

TEST(CObjectTest, DynamicCreationMakesTheRecordedClass) {
    g_shapesDestroyed = 0;
    std::unique_ptr<CObject> made(RUNTIME_CLASS(CTestCircle)->CreateObject());
    ASSERT_NE(nullptr, made);
    EXPECT_EQ(RUNTIME_CLASS(CTestCircle), made->GetRuntimeClass());
    EXPECT_TRUE(made->IsKindOf(RUNTIME_CLASS(CTestShape)));
    EXPECT_TRUE(made->IsKindOf(RUNTIME_CLASS(CObject)));
    EXPECT_EQ(5, static_cast<CTestCircle*>(made.get())->m_radius);

    // Destruction through the base runs the derived destructors.
    made.reset();
    EXPECT_EQ(1, g_shapesDestroyed);

    // Classes declared dynamic only cannot be created.
    EXPECT_EQ(nullptr, RUNTIME_CLASS(CTestShape)->CreateObject());
    EXPECT_EQ(nullptr, RUNTIME_CLASS(CObject)->CreateObject());

    const CTestShape shape;
    EXPECT_FALSE(shape.IsKindOf(RUNTIME_CLASS(CTestCircle)));
}

TEST(CObjectTest, ExceptionsCarryTheirRuntimeClass) {
    CFileException error;
    EXPECT_TRUE(error.IsKindOf(RUNTIME_CLASS(CException)));
    EXPECT_EQ(0, std::strcmp("CFileException", error.GetRuntimeClass()->m_lpszClassName));
}

} // namespace
