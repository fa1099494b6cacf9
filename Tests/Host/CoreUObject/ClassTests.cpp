// SPDX-License-Identifier: MIT
#include "TestObjects.h"

#include "CoreUObject/Package.h"

#include <gmock/gmock.h>

namespace
{
class FClass : public FObjectTest
{
};

TEST_F(FClass, BearsTheNameOfItsTypeWithoutThePrefix)
{
	EXPECT_EQ(UTestNode::StaticClass()->GetFName(), FName(TEXT("TestNode")));
	EXPECT_EQ(UObject::StaticClass()->GetFName(), FName(TEXT("Object")));
}

TEST_F(FClass, HasOneBaseClassAndOnlyTheRootHasNone)
{
	EXPECT_EQ(UTestLeaf::StaticClass()->GetSuperClass(), UTestNode::StaticClass());
	EXPECT_EQ(UTestNode::StaticClass()->GetSuperClass(), UObject::StaticClass());
	EXPECT_EQ(UObject::StaticClass()->GetSuperClass(), nullptr);
}

TEST_F(FClass, IsChildOfItselfAndOfEveryClassAbove)
{
	EXPECT_TRUE(UTestLeaf::StaticClass()->IsChildOf(UTestLeaf::StaticClass()));
	EXPECT_TRUE(UTestLeaf::StaticClass()->IsChildOf(UTestNode::StaticClass()));
	EXPECT_TRUE(UTestLeaf::StaticClass()->IsChildOf(UObject::StaticClass()));
}

TEST_F(FClass, IsNoChildOfAClassBelowOrBesideItNorOfNull)
{
	EXPECT_FALSE(UTestNode::StaticClass()->IsChildOf(UTestLeaf::StaticClass()));
	EXPECT_FALSE(UTestNode::StaticClass()->IsChildOf(UTestOther::StaticClass()));
	EXPECT_FALSE(UTestOther::StaticClass()->IsChildOf(UTestNode::StaticClass()));
	EXPECT_FALSE(UTestNode::StaticClass()->IsChildOf(nullptr));
}

TEST_F(FClass, KnowsTheClassesThatDeriveFromItDirectly)
{
	EXPECT_THAT(UTestNode::StaticClass()->GetDerivedClasses(), testing::ElementsAre(UTestLeaf::StaticClass()));
	EXPECT_THAT(UObject::StaticClass()->GetDerivedClasses(), testing::Contains(UTestNode::StaticClass()));
	EXPECT_THAT(UObject::StaticClass()->GetDerivedClasses(), testing::Not(testing::Contains(UTestLeaf::StaticClass())));
}

TEST_F(FClass, IsFoundByItsNameBeforeAnyInstanceWasMade)
{
	EXPECT_EQ(UClass::Find(TEXT("TestOther")), UTestOther::StaticClass());
	EXPECT_EQ(UClass::Find(TEXT("UTestOther")), nullptr);
	EXPECT_EQ(UClass::Find(TEXT("NoSuchClass")), nullptr);
	EXPECT_EQ(UClass::Find(NAME_None), nullptr);
}

TEST_F(FClass, HasOneDefaultObjectThatIsAnInstanceOfExactlyThatClass)
{
	UObject* const Default = UTestLeaf::StaticClass()->GetDefaultObject();
	EXPECT_EQ(Default, UTestLeaf::StaticClass()->GetDefaultObject());
	EXPECT_NE(Default, UTestNode::StaticClass()->GetDefaultObject());
	EXPECT_EQ(Default->GetClass(), UTestLeaf::StaticClass());
	EXPECT_TRUE(Default->HasAnyFlags(RF_ClassDefaultObject));
	EXPECT_EQ(Default->GetName(), TEXT("Default__TestLeaf"));
}

TEST_F(FClass, DefaultObjectSurvivesCollectionAndKeepsWhatItReferences)
{
	TObjectPtr<UTestOther> Referenced = NewObject<UTestOther>();
	UTestNode* const Default = CastChecked<UTestNode>(UTestNode::StaticClass()->GetDefaultObject());
	Default->Link(Referenced);
	CollectGarbage();
	EXPECT_EQ(UTestNode::StaticClass()->GetDefaultObject(), Default);
	EXPECT_TRUE(IsValid(Referenced));
	Default->Links.Empty();
	CollectGarbage();
	EXPECT_EQ(Referenced.Get(), nullptr);
}

TEST_F(FClass, NewObjectsAreNoDefaultObjects)
{
	EXPECT_FALSE(NewObject<UTestNode>()->HasAnyFlags(RF_ClassDefaultObject));
}

TEST_F(FClass, ListsInstancesOfExactlyItself)
{
	UTestOther* const Other = NewObject<UTestOther>();
	UTestLeaf* const Leaf = NewObject<UTestLeaf>();
	EXPECT_THAT(UTestOther::StaticClass()->GetInstances(),
		testing::UnorderedElementsAre(Other, UTestOther::StaticClass()->GetDefaultObject()));
	EXPECT_THAT(UTestLeaf::StaticClass()->GetInstances(),
		testing::UnorderedElementsAre(Leaf, UTestLeaf::StaticClass()->GetDefaultObject()));
	EXPECT_THAT(UTestNode::StaticClass()->GetInstances(), testing::Not(testing::Contains(Leaf)));
}

TEST_F(FClass, CastGivesTheObjectOrNull)
{
	UObject* const Leaf = NewObject<UTestLeaf>();
	const UObject* const ConstLeaf = Leaf;
	EXPECT_EQ(Cast<UTestNode>(Leaf), Leaf);
	EXPECT_EQ(Cast<UTestLeaf>(ConstLeaf), Leaf);
	EXPECT_EQ(Cast<UTestOther>(Leaf), nullptr);
	EXPECT_EQ(Cast<UTestNode>(static_cast<UObject*>(nullptr)), nullptr);
	EXPECT_TRUE(Leaf->IsA<UTestNode>());
	EXPECT_FALSE(Leaf->IsA(UTestOther::StaticClass()));
	EXPECT_FALSE(Leaf->IsA(static_cast<UClass*>(nullptr)));
}

TEST_F(FClass, IsKnownAcrossLibraries)
{
	EXPECT_EQ(UClass::Find(TEXT("Package")), UPackage::StaticClass());
	EXPECT_EQ(NewObject<UPackage>()->GetClass(), UPackage::StaticClass());
}
} // namespace
