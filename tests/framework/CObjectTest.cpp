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

TEST(CObjectTest, DynamicCreationAndTheClassTree) {
    g_shapesDestroyed = 0;
    std::unique_ptr<CObject> made(RUNTIME_CLASS(CTestCircle)->CreateObject());
    ASSERT_NE(nullptr, made);
    EXPECT_EQ(RUNTIME_CLASS(CTestCircle), made->GetRuntimeClass());
    EXPECT_TRUE(made->IsKindOf(RUNTIME_CLASS(CTestShape)));
    EXPECT_EQ(5, static_cast<CTestCircle*>(made.get())->m_radius);
    made.reset(); // through the base: the derived destructors run
    EXPECT_EQ(1, g_shapesDestroyed);

    // Classes declared dynamic only cannot be created.
    EXPECT_EQ(nullptr, RUNTIME_CLASS(CTestShape)->CreateObject());
    EXPECT_FALSE(CTestShape().IsKindOf(RUNTIME_CLASS(CTestCircle)));
    EXPECT_FALSE(RUNTIME_CLASS(CTestCircle)->IsDerivedFrom(RUNTIME_CLASS(CException)));
    EXPECT_TRUE(RUNTIME_CLASS(CFileException)->IsDerivedFrom(RUNTIME_CLASS(CObject)));
}

} // namespace
