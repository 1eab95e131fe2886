# cmake -DEXPORTS=file -DTESTS=directory -P CompareRefused.cmake
#
# Each exported function is known to ask for memory or not to, by its container and its name; one that
# asks is called in a test that refuses memory. A function whose name is new fails, so that none is
# forgotten. A typed test calls an operation for every element type, under its common name.
cmake_minimum_required(VERSION 3.22)

# What the tests that refuse memory say, in one piece.
set(texts)
foreach(pattern IN ITEMS *Refused*.cpp String.cpp Pair.cpp BasisUpdate.cpp VectorExchange.cpp)
    file(GLOB_RECURSE files ${TESTS}/${pattern})
    foreach(file IN LISTS files)
        file(READ ${file} text)
        string(APPEND texts "${text}")
    endforeach()
endforeach()

# The containers: the prefix of their functions, the name under which typed tests call them, and what
# asks for memory.
set(containers Vector List Unordered Pair Matrix)
set(Vector_call V)
set(Vector_asks ConstructN ConstructRange ConstructCopy Assign Swap Reserve PushBack Insert InsertN
    InsertRange Resize)
set(List_call L)
set(List_asks ConstructN ConstructRange ConstructCopy Assign Insert InsertN InsertRange Resize PushFront
    PushBack CreateNode_)
set(Unordered_call M)
set(Unordered_asks Construct ConstructCopy Assign Insert Resize)
set(Pair_call P)
set(Pair_asks Construct ConstructCopy Assign Swap)
set(Matrix_call "TypeParam|NuvMatrix_NuvFloat32")
set(Matrix_asks Construct ConstructIdentity ConstructCopy ConstructCopyRange Assign Resize Swap Add
    Subtract Multiply MultiplyScalar Transpose Inverse)

# Containers' operations that ask for nothing.
set(silent
    ConstructDefault Destruct Clear GetAllocator GetBucketAllocator GetNodeAllocator GetNodeSize Empty Size
    Capacity MaxSize Begin BeginConst End EndConst RBegin RBeginConst REnd REndConst At AtConst Front
    FrontConst Back BackConst PopBack PopFront Erase EraseRange EraseKey Splice SpliceOne HookNode_
    UnhookNode_ Count Find FindConst EqualRange EqualRangeConst GetStatistics BucketCount HashFunction Dump
    Reset CopyRange SwapRow SwapColumn SetVal GetNumRows GetNumColumns Equal Less)
# Whose swap exchanges records.
set(silent_swaps List Unordered)

# The other functions, by their whole names.
set(functions_asking
    NuvStringConstructCopy NuvStringConstructFormatted NuvStringAssign
    NuvLinearProgrammingVariableConstruct NuvLinearProgrammingVariableConstructCopy
    NuvLinearProgrammingVariableAssign NuvLinearProgrammingVariableSetName
    NuvLinearProgrammingConstraintConstruct NuvLinearProgrammingConstraintConstructIndex
    NuvLinearProgrammingConstraintConstructCopy NuvLinearProgrammingConstraintAssign
    NuvLinearProgrammingConstructDefault NuvLinearProgrammingConstruct NuvLinearProgrammingSetNumVars
    NuvLinearProgrammingSetInput NuvLinearProgrammingSetVariableInfo NuvLinearProgrammingSetConstraint
    NuvLinearProgrammingSetConstraintByName NuvLinearProgrammingSetConstraintByIndex
    NuvLinearProgrammingSetObjective NuvLinearProgrammingSetObjectiveByIndex
    NuvLinearProgrammingPrepareInputs_ NuvLinearProgrammingSolve NuvRevisedSimplexSolvePhaseI
    NuvRevisedSimplexSolvePhaseII NuvRevisedSimplexAlogirthmBasisUpdate)
set(functions_silent
    NuvStringConstructDefault NuvStringEqual NuvStringHash NuvStringDestruct NuvConstraintIdHash
    NuvLinearProgrammingVariableConstructDefault NuvLinearProgrammingVariableDestruct
    NuvLinearProgrammingDestruct NuvLinearProgrammingRemoveConstraint NuvRevisedSimplexIsPhaseIRequired)
set(functions_silent_pattern
    "^Nuv(UnorderedBucket_.*|LinearProgramming(Variable|Constraint)?(Get|Set(Type|Index)$|Equal|Less).*|LinearProgrammingConstraintDestruct)$")

set(forgotten)
set(unknown)
set(swept 0)
macro(expect_called pattern function)
    if(texts MATCHES "${pattern}")
        math(EXPR swept "${swept} + 1")
    else()
        list(APPEND forgotten ${function})
    endif()
endmacro()

file(STRINGS ${EXPORTS} functions REGEX "^[^#]")
list(FILTER functions EXCLUDE REGEX "Iterator")  # they own nothing
foreach(function IN LISTS functions)
    if(function MATCHES "^NuvUnorderedInsert__")
        expect_called("M::InsertDuplicate[(]" ${function})
    elseif(function MATCHES "^Nuv(Vector|List|Unordered|Pair|Matrix)_.*(Float32|Uint|Variable|Constraint)([A-Z][A-Za-z]*_?)$")
        set(container ${CMAKE_MATCH_1})
        set(operation ${CMAKE_MATCH_3})
        if(operation IN_LIST ${container}_asks)
            expect_called("[^A-Za-z](${${container}_call})(::)?${operation}[(]" ${function})
        elseif(NOT operation IN_LIST silent AND NOT (operation STREQUAL Swap AND container IN_LIST silent_swaps))
            list(APPEND unknown ${function})
        endif()
    elseif(function IN_LIST functions_asking)
        expect_called("[^A-Za-z]${function}[^A-Za-z_]" ${function})
    elseif(NOT function IN_LIST functions_silent AND NOT function MATCHES "${functions_silent_pattern}")
        list(APPEND unknown ${function})
    endif()
endforeach()

if(forgotten OR unknown)
    list(JOIN forgotten "\n  " forgotten)
    list(JOIN unknown "\n  " unknown)
    message(FATAL_ERROR "in no test that refuses memory:\n  ${forgotten}\nnot known to ask for memory or not:\n  ${unknown}")
endif()
message(STATUS "${swept} functions that ask for memory, each in a test that refuses it")
