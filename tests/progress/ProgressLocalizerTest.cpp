#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ProgressLocalizer.h"

using KelBase::ProgressLocalizer;

namespace {

struct Message {
    const wchar_t* text;
    std::vector<const char*> keys;
};

// Every key that shows a message, by message.
const Message messages[] = {
    {L"Preparing data", {"KelSDK.Triangles.Data.MContourEdgesOverlapper.MContourEdgesOverlapper"}},
    {L"Joining shells", {"KelSDK.Triangles.Data.MContourEdgesOverlapper.Operate"}},
    {L"Reading", {"KelSDK.Triangles.Data.MStlBase.LoadCompressed.1"}},
    {L"Uncompressing", {"KelSDK.Triangles.Data.MStlBase.LoadCompressed.2"}},
    {L"Compressing", {"KelSDK.Triangles.Data.MStlBase.SaveCompressed.1"}},
    {L"Writing", {"KelSDK.Triangles.Data.MStlBase.SaveCompressed.2"}},
    {L"Loading ASCII",
     {"KelSDK.Triangles.Data.MStlBaseFileUtilities.ReadAsciiAndRemoveIndenticalTriangles"}},
    {L"Copying curves", {"KelSDK.Triangles.Data.MStlCloner.CloneCurves"}},
    {L"Copying graphs", {"KelSDK.Triangles.Data.MStlCloner.CloneGraphs"}},
    {L"Copying STL", {"KelSDK.Triangles.Data.MStlCloner.CloneStl"}},
    {L"Copying triangles", {"KelSDK.Triangles.Data.MStlCloner.CloneSurfaces"}},
    {L"Compressing STL",
     {"KelSDK.Triangles.Data.MStlCompact.ConvertFromStlBase",
      "KelSDK.Triangles.Data.MStlCompressedStreamerOut.Save",
      "KelSDK.Triangles.Data.MStlCompressor.Operate"}},
    {L"Upgrading STL", {"KelSDK.Triangles.Data.MStlCompact.ConvertToStlBase"}},
    {L"Sharing vertices", {"KelSDK.Triangles.Data.MStlCompact.ShareVertices"}},
    {L"Calculating wireframe", {"KelSDK.Triangles.Data.MStlDataWireFrame._Recalculate"}},
    {L"Loading part", {"KelSDK.Triangles.Data.MStlFileIO._LoadStl"}},
    {L"Saving part", {"KelSDK.Triangles.Data.MStlFileIO._SaveStl"}},
    {L"Dividing data",
     {"KelSDK.Triangles.Tooling.M2dField.ADD_3D_TRIANGLE_INTERSECTIONS_TO_EDGE_LIST",
      "KelStlCutting.MCutter.DIVIDE_DATA"}},
    {L"Adding verticals", {"KelSDK.Triangles.Tooling.M2dField.ADD_VERTICAL_TRIANGLES"}},
    {L"Calculating parting lines (lower, upper, undercuts)",
     {"KelSDK.Triangles.Tooling.M2dField.CalculatePartingPlanes.1"}},
    {L"Calculating parting lines (lower, upper)",
     {"KelSDK.Triangles.Tooling.M2dField.CalculatePartingPlanes.2"}},
    {L"Calculating parting lines (lower, undercuts)",
     {"KelSDK.Triangles.Tooling.M2dField.CalculatePartingPlanes.3"}},
    {L"Calculating parting lines (lower)",
     {"KelSDK.Triangles.Tooling.M2dField.CalculatePartingPlanes.4"}},
    {L"Calculating parting lines (upper, undercuts)",
     {"KelSDK.Triangles.Tooling.M2dField.CalculatePartingPlanes.5"}},
    {L"Calculating parting lines (upper)",
     {"KelSDK.Triangles.Tooling.M2dField.CalculatePartingPlanes.6"}},
    {L"Calculating parting lines (undercuts)",
     {"KelSDK.Triangles.Tooling.M2dField.CalculatePartingPlanes.7"}},
    {L"Preparing data mode 2", {"KelSDK.Triangles.Tooling.M2dField.EliminatePointsInTriangles.1"}},
    {L"Retriangulating",
     {"KelSDK.Triangles.Tooling.M2dField.EliminatePointsOnEdgeOfTriangles",
      "KelSDK.Triangles.Tooling.M2dField.RetriangulateOnBadEdges"}},
    {L"Preparing data mode 1",
     {"KelSDK.Triangles.Tooling.M2dField.EliminatePointsOnEdgesOfTriangles"}},
    {L"Preparing data mode 3", {"KelSDK.Triangles.Tooling.M2dField.FIND_SURROUNDING_TRIANGLES"}},
    {L"Linking parting planes", {"KelSDK.Triangles.Tooling.M2dField.LINK_PARTING_PLANES.1"}},
    {L"Searching near parting line triangles",
     {"KelSDK.Triangles.Tooling.M2dField.LINK_PARTING_PLANES.2"}},
    {L"Reducing data mode 2", {"KelSDK.Triangles.Tooling.M2dField.REDUCE_MULTIPLE_MODE"}},
    {L"Reducing data mode 1", {"KelSDK.Triangles.Tooling.M2dField.REDUCE_SIMPLE_MODE"}},
    {L"Recreating STL", {"KelSDK.Triangles.Tooling.M2dField.REMAKE_STL"}},
    {L"Switching triangle lists", {"KelSDK.Triangles.Tooling.M2dField.SWITCH_TRIANGLE_LISTS"}},
    {L"Switching to new triangle list", {"KelSDK.Triangles.Tooling.M2dField.TAKE_NEW_TRIANGLES"}},
    {L"Creating cavities", {"KelSDK.Triangles.Tooling.M2dField.UPDATE_OUTPUTS"}},
    {L"Creating field border",
     {"KelSDK.Triangles.Tooling.M2dFieldContourMaker.CreateSubTrianglesInSubFields"}},
    {L"Converting SLC to STL", {"KelSliceImageStlOperations.KelStlMSliceToStlOperator.Operate"}},
    {L"Cut with pins operator", {"KelStlCutting.MStlBaseOperatorCutWithPins.Operate"}},
    {L"Cut with plane", {"KelStlCutting.MStlBaseOperatorPlaneCut.Operate"}},
};

// The keys that show no text of their own.
const char* const silentKeys[] = {
    "KelSDK.Triangles.Data.MStlBase.LoadCompressed",
    "KelSDK.Triangles.Data.MStlBase.SaveCompressed",
    "KelSDK.Triangles.Data.MStlBaseFileUtilities.ReadAsciiAndRemoveIndenticalTriangles.1",
    "KelSDK.Triangles.Data.MStlBaseFileUtilities.ReadAsciiAndRemoveIndenticalTriangles.2",
    "KelSDK.Triangles.Data.MStlBaseFileUtilities.ReadFilePartly",
    "KelSDK.Triangles.Data.MStlBaseFileUtilities.WriteAsciiFILE",
    "KelSDK.Triangles.Data.MStlBaseFileUtilities.WriteAsciiMFile",
    "KelSDK.Triangles.Data.MStlBaseFileUtilities.WriteAsciiWithMultipleSurfacesFILE",
    "KelSDK.Triangles.Data.MStlBaseFileUtilities.WriteAsciiWithMultipleSurfacesMFile",
    "KelSDK.Triangles.Data.MStlBaseFileUtilities.WriteSurfaceToAsciiStlFileFILE",
    "KelSDK.Triangles.Data.MStlBaseFileUtilities.WriteSurfaceToAsciiStlFileMFile",
    "KelSDK.Triangles.Data.MStlCloner._CloneColorMaskPoints",
    "KelSDK.Triangles.Data.MStlCloner._CloneColorMasks",
    "KelSDK.Triangles.Data.MStlCloner._CloneColorMaskSurfaces",
    "KelSDK.Triangles.Data.MStlCloner._CloneColorMaskTrianglePoints",
    "KelSDK.Triangles.Data.MStlCloner._CloneColorMaskTriangles",
    "KelSDK.Triangles.Data.MStlCloner._CloneCurve",
    "KelSDK.Triangles.Data.MStlCloner._CloneCurveSet",
    "KelSDK.Triangles.Data.MStlCloner._CloneCurveSet.1",
    "KelSDK.Triangles.Data.MStlCloner._CloneDataMasks",
    "KelSDK.Triangles.Data.MStlCloner._CloneFeature",
    "KelSDK.Triangles.Data.MStlCloner._CloneFeature.1",
    "KelSDK.Triangles.Data.MStlCloner._CloneFeature.2",
    "KelSDK.Triangles.Data.MStlCloner._CloneFeature.3",
    "KelSDK.Triangles.Data.MStlCloner._CloneFeature.4",
    "KelSDK.Triangles.Data.MStlCloner._CloneFeature.5",
    "KelSDK.Triangles.Data.MStlCloner._CloneGraph",
    "KelSDK.Triangles.Data.MStlCloner._CloneIndexMaskPoints",
    "KelSDK.Triangles.Data.MStlCloner._CloneIndexMaskTriangles",
    "KelSDK.Triangles.Data.MStlCloner._CloneMasks",
    "KelSDK.Triangles.Data.MStlCloner._ClonePoints",
    "KelSDK.Triangles.Data.MStlCloner._CloneScalarMaskPoints",
    "KelSDK.Triangles.Data.MStlCloner._CloneScalarMaskTriangles",
    "KelSDK.Triangles.Data.MStlCloner._CloneStandard",
    "KelSDK.Triangles.Data.MStlCloner._CloneSurface",
    "KelSDK.Triangles.Data.MStlCloner._CloneVectorMaskPoints",
    "KelSDK.Triangles.Data.MStlCloner._CloneVectorMaskTriangles",
    "KelSDK.Triangles.Data.MStlCompact._ConvertTrianglesToStlBase",
    "KelSDK.Triangles.Data.MStlCompact.ConvertToStlBase.1",
    "KelSDK.Triangles.Data.MStlCompactHybrid._ConvertTrianglesToStlBase",
    "KelSDK.Triangles.Data.MStlFileReader._ReadAllTriangles",
    "KelSDK.Triangles.Data.MStlFileWriter.WriteStlBase",
    "KelSDK.Triangles.Data.MStlFileWriter.WriteStlFeature",
    "KelSDK.Triangles.Data.MStlFileWriter.WriteStlSurface",
    "KelSDK.Triangles.Data.MStlHybrid._ConvertTrianglesCompactToOnDisk",
    "KelSDK.Triangles.Data.MStlHybrid._ConvertTrianglesOnDiskToCompact",
    "KelSDK.Triangles.Data.MStlHybrid._ConvertTrianglesOnDiskToStandard",
    "KelSDK.Triangles.Data.MStlHybrid._ConvertTrianglesStandardToOnDisk",
    "KelSDK.Triangles.Data.MStlHybrid.SwitchToStandard",
    "KelSDK.Triangles.Data.MStlStitcher.EXECUTE",
    "KelSDK.Triangles.Data.MStlSurfaceStitcher.Operate.1",
    "KelSDK.Triangles.Data.MStlSurfaceStitcher.Operate.2",
    "KelSDK.Triangles.Slicer.MStlOperatorSlicerZ.Operate",
    "KelSDK.Triangles.Tooling.M2dDentalField.RemoveDentalUndercuts",
    "KelSDK.Triangles.Tooling.M2dField.CalculateBorder",
    "KelSDK.Triangles.Tooling.M2dField.CalculateEdgeIntersections",
    "KelSDK.Triangles.Tooling.M2dField.CalculateEdgeIntersections.1",
    "KelSDK.Triangles.Tooling.M2dField.CalculatePartingPlanes",
    "KelSDK.Triangles.Tooling.M2dField.DivideCompleteStlToSubFields",
    "KelSDK.Triangles.Tooling.M2dField.DivideFieldToSubFields",
    "KelSDK.Triangles.Tooling.M2dField.DRAFT_FIELD",
    "KelSDK.Triangles.Tooling.M2dField.EliminatePointsInTriangles",
    "KelSDK.Triangles.Tooling.M2dField.EliminatePointsOnEdgesOfTriangles.1",
    "KelSDK.Triangles.Tooling.M2dField.LINK_PARTING_PLANES",
    "KelSDK.Triangles.Tooling.M2dField.PREPARE_FOR_DRAFT",
    "KelSDK.Triangles.Tooling.M2dField.REDUCE",
    "KelSDK.Triangles.Tooling.M2dField.REMOVE_DRAFT",
    "KelSDK.Triangles.Tooling.M2dField.UNDO_LAST_DRAFT_OPERATION",
    "KelSDK.Triangles.Tooling.M2dFieldDraftCreator.CREATE_DRAFT_ON_FIELD",
    "KelSDK.Triangles.Tooling.M2dFieldSaver.IO",
    "KelSDK.Triangles.Tooling.M2dFieldSaver.IO_DRAFT_FIELDS",
    "KelSDK.Triangles.Tooling.MtlOperatorField2StlConvertor._CreateNonVerticalTriangles",
    "KelSDK.Triangles.Tooling.MtlOperatorField2StlConvertor._CreateVerticalTriangles",
    "KelSDK.Triangles.Tooling.MtlOperatorField2StlConvertor.Convert",
    "KelSDK.Triangles.Tooling.MtlOperatorFillFreeform._CreateGridTriangles",
    "KelStlCutting.AU.CutWithPlane",
    "KelStlCutting.DoubleHolesAttacher.Attach",
    "KelStlCutting.MCutter._CreateEdgeList",
    "KelStlCutting.MCutter._MakeCutAlongPolyline",
    "KelStlCutting.MCutter.CLASSIFY_TRIANGLES",
    "KelStlCutting.MCutter.DIVIDE_TO_CUT_DATA",
    "KelStlCutting.MCutter.EDGES_INTERSECT",
    "KelStlCutting.MCutter.FINAL_CUT_REMOVE",
    "KelStlCutting.MCutter.MAKE_CUT",
    "KelStlCutting.MCutter.MAKE_CUT_AT_VALUE",
    "KelStlCutting.MCutter.MAKE_DEPTH_CUT",
    "KelStlCutting.MCutter.MAKE_SUPPORT_CUT",
    "KelStlCutting.MCutter.REMOVE_CUT_POINTS_IN_TRIANGLES",
    "KelStlCutting.MStlBaseOperatorCreateZRange._CutOff",
    "KelStlCutting.MStlBaseOperatorCreateZRange.Operate",
    "KelStlCutting.MStlBaseOperatorCutWithPins._AttachToCutParts",
    "KelStlCutting.MStlBaseOperatorCutWithPins._SectionCut",
    "KelStlCutting.PinAttacherSimple.Attach",
    "KelStlCutting.PinAttachFunctions.AttachPins",
    "KelStlCutting.PinAttachFunctions.AttachHoles",
};

} // namespace

TEST(ProgressLocalizer, EveryKeyOfTheTable) {
    size_t keys = 0;
    for (const Message& message : messages) {
        for (const char* key : message.keys) {
            EXPECT_EQ(ProgressLocalizer::Localize(key), message.text) << key;
            ++keys;
        }
    }
    for (const char* key : silentKeys) {
        EXPECT_EQ(ProgressLocalizer::Localize(key), L"") << key;
        ++keys;
    }
    EXPECT_EQ(keys, 141u);
    EXPECT_EQ(std::size(messages), 42u);
}

// Whole keys only, byte for byte: no case folding, no prefixes, no fallback between a sub-step
// and its parent.
TEST(ProgressLocalizer, KeysMatchExactly) {
    const char* const unknown[] = {
        "kelsdk.triangles.data.mstlcloner.clonestl",
        "KelSDK.Triangles.Data.MStlCloner.CloneSTL",
        "KelSDK.Triangles.Data.MStlBaseFileUtilities.ReadAsciiAndRemoveIdenticalTriangles",
        "KelSDK.Triangles.Data.MStlBase.LoadCompressed.3",
        "KelSDK.Triangles.Data.MStlCloner.CloneStl.1",
        "KelSDK.Triangles.Data.MStlCloner.CloneSt",
        "KelSDK.Triangles.Data.MStlCloner.CloneStl ",
        "Triangles.Data.MStlCloner.CloneStl",
        "",
    };
    for (const char* key : unknown)
        EXPECT_EQ(ProgressLocalizer::Localize(key), L"") << '"' << key << '"';
    // A key with a NUL inside is not its prefix.
    const std::string withNul("KelSDK.Triangles.Data.MStlCloner.CloneStl\0x", 43);
    EXPECT_EQ(ProgressLocalizer::Localize(withNul), L"");
}
