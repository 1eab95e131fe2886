# The string, the pair, the growable array, the list, the map and the two records, each for every
# instantiation and under a memory that refuses.
nuv_test(
    core_vector
    SOURCES core/Vector.cpp core/VectorExchange.cpp core/VectorInsertion.cpp
            core/VectorIterators.cpp core/VectorRefused.cpp
    LIBRARIES Nuv::LinearProgramming
    LABELS valgrind)
nuv_test(
    core_records
    SOURCES core/Pair.cpp core/RecordLayouts.cpp core/Records.cpp core/RecordsRefused.cpp
            core/String.cpp support/TestAllocator.cpp
    LIBRARIES Nuv::LinearProgramming
    LABELS valgrind)
nuv_test(
    core_list
    SOURCES core/List.cpp core/ListIterators.cpp core/ListLinks.cpp core/ListRefused.cpp
    LIBRARIES Nuv::LinearProgramming
    LABELS valgrind)
nuv_test(
    core_unordered
    SOURCES core/Unordered.cpp core/UnorderedAgainstReference.cpp core/UnorderedExchange.cpp
            core/UnorderedOrder.cpp core/UnorderedRefused.cpp
    LIBRARIES Nuv::LinearProgramming
    LABELS valgrind)
